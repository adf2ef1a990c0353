// SPDX-License-Identifier: Apache-2.0
#include "text/windows1252.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kv {
namespace {

constexpr std::array<char16_t, 32> kAltos = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void agregarUtf8(std::string& salida, char32_t c) {
    if (c < 0x80) {
        salida += static_cast<char>(c);
    } else if (c < 0x800) {
        salida += static_cast<char>(0xC0 | (c >> 6));
        salida += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        salida += static_cast<char>(0xE0 | (c >> 12));
        salida += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        salida += static_cast<char>(0x80 | (c & 0x3F));
    }
}

struct Caracter {
    char32_t codigo;
    std::size_t largo; ///< bytes taken; 0 when the bytes at the position are not UTF-8
};

Caracter leer(std::string_view t, std::size_t i) {
    const auto b = static_cast<std::uint8_t>(t[i]);
    if (b < 0x80) return {b, 1};
    const std::size_t largo = b >= 0xF0 && b < 0xF5 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 ? 2 : 0;
    if (largo == 0 || b >= 0xF5 || i + largo > t.size()) return {0, 0};
    char32_t c = b & (0x7F >> largo);
    for (std::size_t k = 1; k < largo; ++k) {
        const auto s = static_cast<std::uint8_t>(t[i + k]);
        if ((s & 0xC0) != 0x80) return {0, 0};
        c = (c << 6) | (s & 0x3F);
    }
    const bool corto = (largo == 3 && c < 0x800) || (largo == 4 && (c < 0x10000 || c > 0x10FFFF));
    return corto || (c >= 0xD800 && c < 0xE000) ? Caracter{0, 0} : Caracter{c, largo};
}

char byteDe(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
    for (std::size_t i = 0; i < kAltos.size(); ++i) {
        if (kAltos[i] == c) return static_cast<char>(0x80 + i);
    }
    return '?';
}

} // namespace

std::string utf8DesdeWindows1252(std::string_view bytes) {
    std::string salida;
    salida.reserve(bytes.size());
    for (const char ch : bytes) {
        const auto b = static_cast<std::uint8_t>(ch);
        agregarUtf8(salida, b >= 0x80 && b < 0xA0 ? kAltos[b - 0x80] : b);
    }
    return salida;
}

std::string windows1252DesdeUtf8(std::string_view texto) {
    std::string salida;
    salida.reserve(texto.size());
    for (std::size_t i = 0; i < texto.size();) {
        const Caracter c = leer(texto, i);
        salida += c.largo == 0 ? texto[i] : byteDe(c.codigo);
        i += c.largo == 0 ? 1 : c.largo;
    }
    return salida;
}

bool pareceUtf8(std::string_view texto) {
    bool alguno = false;
    for (std::size_t i = 0; i < texto.size();) {
        const Caracter c = leer(texto, i);
        if (c.largo == 0) return false;
        alguno = alguno || c.largo > 1;
        i += c.largo;
    }
    return alguno;
}

} // namespace kv
