// SPDX-License-Identifier: Apache-2.0
#include "plant/valor_y_estado.h"

#include "text/numeros.h"

namespace kv {

int wordbit(double palabra, int bit) { return entero(palabra).value_or(0) >> (bit & 15) & 1; }

std::string_view textoEstado(double codigo) {
    if (codigo == kOk) return "OK";
    return codigo == kBad ? "BAD" : "";
}

} // namespace kv
