// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

struct CaracterUtf8 {
    char32_t codigo;
    std::size_t largo; ///< bytes taken; 0 when the bytes at the position are not UTF-8
};

/// The character at a position within the text.
[[nodiscard]] CaracterUtf8 leerUtf8(std::string_view texto, std::size_t posicion);
void agregarUtf8(std::string& salida, char32_t codigo);
/// Whether a byte of UTF-8 goes on with a character that began before it.
[[nodiscard]] constexpr bool esContinuacion(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace kv
