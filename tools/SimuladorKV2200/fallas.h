// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "wire/Modulo_Tramas_KV2200.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv::simulador {

/// Chance from a seed: the same numbers on every machine.
class Azar {
  public:
    explicit Azar(std::uint64_t semilla) : estado_(semilla) {}
    std::uint64_t siguiente();
    /// A whole number from `desde` to `hasta`, both included.
    std::int64_t entre(std::int64_t desde, std::int64_t hasta);
    /// True with probability `p`.
    bool acierta(double p);

  private:
    std::uint64_t estado_;
};

/// What a station does wrong.
struct Fallas {
    std::int64_t retardoMinMs = 0;
    std::int64_t retardoMaxMs = 0;
    double sinRespuesta = 0; ///< probability, as the next two
    double basura = 0;       ///< bytes before the answer, or an answer with a wrong one
    double perderRespuestaDeEscritura = 0; ///< the value is stored all the same
    bool fragmentar = false;
    double cortarCadaS = 0;     ///< the links are closed about this often; 0: never
    bool cortarDeGolpe = false; ///< and then reset: nothing that was on its way arrives
    double ausenteDuraS = 0;    ///< silent for the last so many seconds
    double ausenteCadaS = 0;    ///< of every so many
};

/// Sets one option from its name and value as the command line writes them. Empty when it is good,
/// else what is wrong, in Spanish.
[[nodiscard]] std::string fijarFalla(Fallas& fallas, std::string_view nombre,
                                     std::string_view valor);

/// Bytes that leave together, so long after those before them (the first: after the request).
struct Trozo {
    std::int64_t esperaMs = 0;
    std::string bytes;
};

/// How an answer leaves, empty when it does not. `ms` is the time since the start.
[[nodiscard]] std::vector<Trozo> planear(const Respuesta& respuesta, bool esEscritura,
                                         const Fallas& fallas, std::int64_t ms, Azar& azar);

/// When a link made at this moment is to be cut, in milliseconds from now; 0: never.
[[nodiscard]] std::int64_t vidaDeEnlaceMs(const Fallas& fallas, Azar& azar);

} // namespace kv::simulador
