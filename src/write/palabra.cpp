// SPDX-License-Identifier: Apache-2.0
#include "write/palabra.h"

#include "text/numeros.h"

#include <cstdint>

namespace kv {
namespace {

std::int32_t comoEntero(double palabra) { return entero(palabra).value_or(0); }

} // namespace

double SetearBIT_YDevolverPalabra(double palabra, int bit, bool marcado) {
    const std::int32_t mascara = 1 << (bit & 15);
    return marcado ? comoEntero(palabra) | mascara : comoEntero(palabra) & (0xFFFF - mascara);
}

} // namespace kv
