// SPDX-License-Identifier: Apache-2.0
#include "text/texto.h"

#include "text/utf8.h"

#include <algorithm>

namespace kv {
namespace {

constexpr char minuscula(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

} // namespace

std::string_view recortar(std::string_view texto) {
    constexpr std::string_view kBlancos = " \t\r\n";
    const auto inicio = texto.find_first_not_of(kBlancos);
    if (inicio == std::string_view::npos) return {};
    return texto.substr(inicio, texto.find_last_not_of(kBlancos) - inicio + 1);
}

std::string minusculas(std::string_view texto) {
    std::string s(texto);
    for (char& c : s)
        c = minuscula(c);
    return s;
}

bool igualSinCaja(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (minuscula(a[i]) != minuscula(b[i])) return false;
    }
    return true;
}

int compararSinCaja(std::string_view a, std::string_view b) {
    const auto [x, y] =
        std::ranges::mismatch(a, b, [](char p, char q) { return minuscula(p) == minuscula(q); });
    if (x != a.end() && y != b.end()) {
        const auto byte = [](char c) { return static_cast<unsigned char>(minuscula(c)); };
        return byte(*x) < byte(*y) ? -1 : 1;
    }
    return x != a.end() ? 1 : y != b.end() ? -1 : 0;
}

std::size_t buscarSinCaja(std::string_view texto, std::string_view parte, std::size_t desde) {
    if (parte.empty() || parte.size() > texto.size()) return std::string_view::npos;
    for (std::size_t i = desde; i + parte.size() <= texto.size(); ++i) {
        if (igualSinCaja(texto.substr(i, parte.size()), parte)) return i;
    }
    return std::string_view::npos;
}

std::string reemplazarSinCaja(std::string_view texto, std::string_view parte,
                              std::string_view nuevo) {
    std::string salida;
    std::size_t desde = 0;
    for (auto i = buscarSinCaja(texto, parte); i != std::string_view::npos;
         i = buscarSinCaja(texto, parte, desde)) {
        salida += texto.substr(desde, i - desde);
        salida += nuevo;
        desde = i + parte.size();
    }
    salida += texto.substr(desde);
    return salida;
}

std::vector<std::string_view> partir(std::string_view texto, char separador) {
    std::vector<std::string_view> partes;
    for (;;) {
        const auto i = texto.find(separador);
        partes.push_back(texto.substr(0, i));
        if (i == std::string_view::npos) return partes;
        texto.remove_prefix(i + 1);
    }
}

std::string_view comienzo(std::string_view texto, std::size_t largo) {
    if (texto.size() <= largo) return texto;
    while (largo > 0 && esContinuacion(texto[largo]))
        --largo;
    return texto.substr(0, largo);
}

std::string enUnaLinea(std::string_view texto) {
    std::string salida;
    salida.reserve(texto.size());
    for (std::size_t i = 0; i < texto.size(); ++i) {
        if (texto[i] == '\r' && i + 1 < texto.size() && texto[i + 1] == '\n') ++i;
        salida += texto[i] == '\r' || texto[i] == '\n' ? ' ' : texto[i];
    }
    return salida;
}

} // namespace kv
