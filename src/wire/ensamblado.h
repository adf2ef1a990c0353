// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "wire/Modulo_Tramas_KV2200.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kv {

/// Bytes in, answers out: a station's bytes may come in pieces, run together, or between noise.
struct Ensamblado {
    struct Hallada {
        Respuesta trama;
        bool alPrincipio; ///< only answers stand before it in its arrival
    };
    std::vector<Hallada> respuestas;  ///< valid ones, in the order in which they came
    std::size_t basura = 0;           ///< bytes that make no answer
    std::vector<std::uint8_t> juntos; ///< room to work in
};

/// Looks for answers in what was held and what arrived. `tenidos` becomes what may still be the
/// beginning of one: at most 7 bytes. Fewer than 8 bytes in all are always kept. Takes a time that
/// grows with the number of bytes.
void ensamblar(std::vector<std::uint8_t>& tenidos, std::span<const std::uint8_t> llegaron,
               Ensamblado& salida);

/// A request's own echo, as a half-duplex converter gives, behind a stray marker: seven bytes that
/// end in the sum of the six before, so it passes for an answer. A station that repeats all of a
/// request and answers 0 says the same, but it begins where its packet does.
[[nodiscard]] bool esEco(const Ensamblado::Hallada& hallada, const Solicitud& solicitud);

} // namespace kv
