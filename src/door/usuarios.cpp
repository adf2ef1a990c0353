// SPDX-License-Identifier: Apache-2.0
#include "door/usuarios.h"

#include "text/texto.h"

#include <charconv>

namespace kv {
namespace {

constexpr std::size_t kArchivoMaximo = std::size_t{4} << 20;
constexpr std::size_t kNombreMaximo = 64;

std::optional<std::uint32_t> numeroEntero(std::string_view texto) {
    std::uint32_t n = 0;
    const auto leido = std::from_chars(texto.data(), texto.data() + texto.size(), n);
    if (leido.ec != std::errc() || leido.ptr != texto.data() + texto.size()) return std::nullopt;
    return n;
}

/// Calls `hacer` with name and number of each line until it says true.
template <class F>
void porRenglon(Archivos& archivos, const std::string& ruta, F hacer) {
    const auto contenido = archivos.leer(ruta, kArchivoMaximo);
    if (!contenido) return;
    for (const std::string_view renglon : partir(*contenido, '\n')) {
        const auto campos = partir(renglon, ':');
        if (campos.size() < 3 || campos[0].empty()) continue;
        const auto numero = numeroEntero(campos[2]);
        if (numero && hacer(campos[0], *numero)) return;
    }
}

} // namespace

std::string nombreDeUsuario(Archivos& archivos, std::uint32_t usuario) {
    std::string nombre = std::to_string(usuario);
    porRenglon(archivos, "/etc/passwd", [&](std::string_view suyo, std::uint32_t numero) {
        if (numero != usuario) return false;
        nombre = suyo.substr(0, kNombreMaximo);
        return true;
    });
    return nombre;
}

std::optional<std::uint32_t> numeroDeGrupo(Archivos& archivos, std::string_view grupo) {
    std::optional<std::uint32_t> numero = numeroEntero(grupo);
    porRenglon(archivos, "/etc/group", [&](std::string_view suyo, std::uint32_t suNumero) {
        if (suyo != grupo) return false;
        numero = suNumero;
        return true;
    });
    return numero;
}

bool estaEnLista(std::string_view lista, std::uint32_t usuario, std::string_view nombre) {
    while (!lista.empty()) {
        const std::size_t fin = lista.find_first_of(", \t;");
        const std::string_view uno = lista.substr(0, fin);
        // A name that looks like a number is not believed: it may be another's number.
        const auto numero = numeroEntero(uno);
        if (!uno.empty() && (numero ? *numero == usuario : uno == nombre)) return true;
        lista = fin == std::string_view::npos ? std::string_view() : lista.substr(fin + 1);
    }
    return false;
}

} // namespace kv
