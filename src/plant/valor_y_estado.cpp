// SPDX-License-Identifier: Apache-2.0
#include "plant/valor_y_estado.h"

#include "text/numeros.h"

#include <cstdint>

namespace kv {

double bitDe(double valor, std::size_t b) {
    return static_cast<std::uint32_t>(entero(valor).value_or(0)) >> b & 1;
}

std::string_view textoEstado(double codigo) {
    if (codigo == kOk) return "OK";
    return codigo == kBad ? "BAD" : "";
}

} // namespace kv
