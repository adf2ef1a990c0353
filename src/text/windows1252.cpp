// SPDX-License-Identifier: Apache-2.0
#include "text/windows1252.h"

#include "text/utf8.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kv {
namespace {

constexpr std::array<char16_t, 32> kAltos = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

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
