// SPDX-License-Identifier: Apache-2.0
#include "text/windows1252.h"

#include "text/tabla_1252.h"
#include "text/utf8.h"

#include <cstddef>
#include <cstdint>

namespace kv {
namespace {

char byteDe(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
    for (std::size_t i = 0; i < kAltosDe1252.size(); ++i) {
        if (kAltosDe1252[i] == c) return static_cast<char>(0x80 + i);
    }
    return '?';
}

} // namespace

std::string utf8DesdeWindows1252(std::string_view bytes) {
    std::string salida;
    salida.reserve(bytes.size());
    for (const char ch : bytes) {
        const auto b = static_cast<std::uint8_t>(ch);
        agregarUtf8(salida, b >= 0x80 && b < 0xA0 ? kAltosDe1252[b - 0x80] : b);
    }
    return salida;
}

std::string windows1252DesdeUtf8(std::string_view texto) {
    std::string salida;
    salida.reserve(texto.size());
    for (std::size_t i = 0; i < texto.size();) {
        const CaracterUtf8 c = leerUtf8(texto, i);
        salida += c.largo == 0 ? texto[i] : byteDe(c.codigo);
        i += c.largo == 0 ? 1 : c.largo;
    }
    return salida;
}

bool pareceUtf8(std::string_view texto) {
    bool alguno = false;
    for (std::size_t i = 0; i < texto.size();) {
        const CaracterUtf8 c = leerUtf8(texto, i);
        if (c.largo == 0) return false;
        alguno = alguno || c.largo > 1;
        i += c.largo;
    }
    return alguno;
}

} // namespace kv
