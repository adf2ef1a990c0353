// SPDX-License-Identifier: Apache-2.0
#include "platform/maquina.h"

#include "text/texto.h"

#include <algorithm>
#include <arpa/inet.h>
#include <string>

namespace kv {
namespace {

constexpr std::size_t kNombreMaximo = 253;
constexpr std::size_t kParteMaxima = 63;
constexpr std::string_view kCifras = "0123456789";
constexpr std::string_view kDeNombre = "abcdefghijklmnopqrstuvwxyz0123456789-_";

bool esParteDeNombre(std::string_view parte) {
    return !parte.empty() && parte.size() <= kParteMaxima && parte.front() != '-' &&
           parte.back() != '-' && parte.find_first_not_of(kDeNombre) == std::string_view::npos;
}

bool pareceNumero(std::string_view parte) {
    return parte.find_first_not_of(kCifras) == std::string_view::npos || parte.starts_with("0x");
}

} // namespace

ClaseDeMaquina claseDeMaquina(std::string_view texto) {
    if (texto.size() > kNombreMaximo || texto.find('\0') != std::string_view::npos)
        return ClaseDeMaquina::Ninguna;
    std::string minuscula = minusculas(texto);
    in6_addr direccion{};
    if (inet_pton(AF_INET, minuscula.c_str(), &direccion) == 1) return ClaseDeMaquina::IPv4;
    if (const auto zona = minuscula.find('%'); zona != std::string::npos) {
        const auto partes = partir(std::string_view(minuscula).substr(zona + 1), '.');
        if (!std::all_of(partes.begin(), partes.end(), esParteDeNombre))
            return ClaseDeMaquina::Ninguna;
        minuscula.resize(zona);
    }
    if (inet_pton(AF_INET6, minuscula.c_str(), &direccion) == 1) return ClaseDeMaquina::IPv6;
    if (minuscula.size() != texto.size()) return ClaseDeMaquina::Ninguna;
    if (minuscula.ends_with('.')) minuscula.pop_back(); // a name from the root on
    const auto partes = partir(minuscula, '.');
    if (!std::all_of(partes.begin(), partes.end(), esParteDeNombre) || pareceNumero(partes.back()))
        return ClaseDeMaquina::Ninguna;
    return ClaseDeMaquina::Nombre;
}

} // namespace kv
