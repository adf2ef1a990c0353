// SPDX-License-Identifier: Apache-2.0
#include "text/numeros.h"

#include "text/texto.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kv {
namespace {

constexpr std::string_view kHexadecimales = "0123456789ABCDEF";

} // namespace

void agregarNumero(std::string& destino, double numero) {
    std::array<char, 32> cifras{};
    char* const inicio = cifras.data();
    char* const fin = inicio + cifras.size();
    if (numero == std::trunc(numero) && std::fabs(numero) < 1e15) {
        const auto r = std::to_chars(inicio, fin, static_cast<long long>(numero));
        destino.append(inicio, r.ptr);
        return;
    }
    const auto r = std::to_chars(inicio, fin, numero);
    destino.append(inicio, r.ptr);
}

std::string textoDeNumero(double numero) {
    std::string texto;
    agregarNumero(texto, numero);
    return texto;
}

std::optional<double> numeroDeTexto(std::string_view texto) {
    texto = recortar(texto);
    if (!texto.empty() && texto.front() == '+') {
        texto.remove_prefix(1);
        if (!texto.empty() && texto.front() == '-') return std::nullopt;
    }
    if (texto.empty()) return std::nullopt;
    const char primera = texto.front() == '-' && texto.size() > 1 ? texto[1] : texto.front();
    if (primera != '.' && (primera < '0' || primera > '9')) return std::nullopt; // "inf", "nan"
    double numero = 0;
    const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), numero);
    if (r.ec != std::errc{} || r.ptr != texto.data() + texto.size()) return std::nullopt;
    return numero;
}

std::optional<double> numeroConComa(std::string_view texto) {
    const auto coma = texto.find(',');
    if (coma == std::string_view::npos || texto.find('.') != std::string_view::npos)
        return numeroDeTexto(texto);
    return numeroDeTexto(std::string(texto).replace(coma, 1, "."));
}

bool esNumerico(std::string_view texto) { return numeroDeTexto(texto).has_value(); }

std::optional<std::int32_t> entero(double numero) {
    const double redondeado = std::nearbyint(numero);
    if (!(redondeado >= -2147483648.0 && redondeado <= 2147483647.0)) return std::nullopt;
    return static_cast<std::int32_t>(redondeado);
}

std::optional<std::int16_t> enteroCorto(double numero) {
    const auto n = entero(numero);
    if (!n || *n < -32768 || *n > 32767) return std::nullopt;
    return static_cast<std::int16_t>(*n);
}

std::optional<std::uint32_t> hexadecimal(std::string_view texto) {
    if (texto.empty() || texto.size() > 8) return std::nullopt;
    std::uint32_t valor = 0;
    const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), valor, 16);
    if (r.ec != std::errc{} || r.ptr != texto.data() + texto.size()) return std::nullopt;
    return valor;
}

void agregarHexadecimal(std::string& destino, std::uint8_t byte) {
    if (byte >= 16) destino += kHexadecimales[byte >> 4];
    destino += kHexadecimales[byte & 15];
}

void agregarDosCifras(std::string& destino, std::uint8_t byte) {
    destino += kHexadecimales[byte >> 4];
    destino += kHexadecimales[byte & 15];
}

} // namespace kv
