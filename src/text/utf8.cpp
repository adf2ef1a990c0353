// SPDX-License-Identifier: Apache-2.0
#include "text/utf8.h"

#include <cstdint>

namespace kv {

void agregarUtf8(std::string& salida, char32_t c) {
    const auto seguir = [&](int desde) {
        for (int corrido = desde; corrido >= 0; corrido -= 6)
            salida += static_cast<char>(0x80 | ((c >> corrido) & 0x3F));
    };
    if (c < 0x80) {
        salida += static_cast<char>(c);
    } else if (c < 0x800) {
        salida += static_cast<char>(0xC0 | (c >> 6));
        seguir(0);
    } else if (c < 0x10000) {
        salida += static_cast<char>(0xE0 | (c >> 12));
        seguir(6);
    } else {
        salida += static_cast<char>(0xF0 | (c >> 18));
        seguir(12);
    }
}

CaracterUtf8 leerUtf8(std::string_view t, std::size_t i) {
    const auto b = static_cast<std::uint8_t>(t[i]);
    if (b < 0x80) return {b, 1};
    const std::size_t largo = b >= 0xF0 && b < 0xF5 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 ? 2 : 0;
    if (largo == 0 || b >= 0xF5 || i + largo > t.size()) return {0, 0};
    char32_t c = b & (0x7F >> largo);
    for (std::size_t k = 1; k < largo; ++k) {
        if (!esContinuacion(t[i + k])) return {0, 0};
        c = (c << 6) | (static_cast<std::uint8_t>(t[i + k]) & 0x3F);
    }
    const bool corto = (largo == 3 && c < 0x800) || (largo == 4 && (c < 0x10000 || c > 0x10FFFF));
    return corto || (c >= 0xD800 && c < 0xE000) ? CaracterUtf8{0, 0} : CaracterUtf8{c, largo};
}

} // namespace kv
