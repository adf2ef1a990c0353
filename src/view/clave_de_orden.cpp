// SPDX-License-Identifier: Apache-2.0
#include "view/clave_de_orden.h"

#include "text/numeros.h"
#include "text/texto.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace kv {
namespace {

/// Digits after their own count: more digits, greater number.
void agregarCifras(std::string& clave, std::string_view cifras) {
    cifras.remove_prefix(std::min(cifras.find_first_not_of('0'), cifras.size()));
    clave += static_cast<char>(std::min<std::size_t>(cifras.size(), 100) + '0');
    clave += cifras;
}

std::string deNumero(std::string_view texto) {
    const double n = numeroDeTexto(texto).value_or(std::numeric_limits<double>::infinity());
    auto bits = std::bit_cast<std::uint64_t>(n);
    constexpr std::uint64_t kSigno = std::uint64_t{1} << 63;
    bits = (bits & kSigno) != 0 ? ~bits : bits | kSigno;
    std::string clave;
    for (int desplazar = 56; desplazar >= 0; desplazar -= 8)
        clave += static_cast<char>(bits >> desplazar);
    return clave;
}

std::string deDireccion(std::string_view texto) {
    std::string clave;
    for (const std::string_view parte : partir(texto, '.')) {
        if (hexadecimal(parte)) {
            agregarCifras(clave, minusculas(parte));
        } else {
            clave.append("~").append(minusculas(parte)); // behind all numbers
        }
        clave += ' ';
    }
    return clave;
}

std::string deTexto(std::string_view texto) {
    constexpr std::string_view kCifras = "0123456789";
    std::string clave;
    while (!texto.empty()) {
        const std::size_t letras = std::min(texto.find_first_of(kCifras), texto.size());
        clave += minusculas(texto.substr(0, letras));
        texto.remove_prefix(letras);
        const std::size_t cifras = std::min(texto.find_first_not_of(kCifras), texto.size());
        if (cifras > 0) agregarCifras(clave, texto.substr(0, cifras));
        texto.remove_prefix(cifras);
    }
    return clave;
}

std::string deFecha(std::string_view t) {
    constexpr std::size_t kLargo = 19;
    if (t.size() != kLargo) return std::string(t);
    std::string clave(t.substr(15, 4));
    return clave.append(t.substr(12, 2)).append(t.substr(9, 2)).append(t.substr(0, 8));
}

} // namespace

std::string claveDeOrden(Especie especie, std::string_view texto) {
    switch (especie) {
    case Especie::Numero:
        return deNumero(texto);
    case Especie::Direccion:
        return deDireccion(texto);
    case Especie::Fecha:
        return deFecha(texto);
    default:
        return deTexto(texto);
    }
}

} // namespace kv
