// SPDX-License-Identifier: Apache-2.0
#include "mundo/opciones.h"

#include "text/numeros.h"
#include "text/texto.h"

#include <limits>
#include <string_view>

namespace kv::mundo {
namespace {

/// A whole number that a double holds exactly; nothing for any other text.
std::optional<std::uint64_t> entero(std::string_view texto) {
    const auto n = numeroDeTexto(texto);
    if (!n || *n < 0 || *n > 9e15) return std::nullopt;
    return static_cast<std::uint64_t>(*n);
}

bool semillas(std::string_view texto, Opciones& o) {
    const auto partes = partir(texto, '-');
    const auto a = entero(partes[0]);
    const auto b = partes.size() == 2 ? entero(partes[1]) : a;
    if (partes.size() > 2 || !a || !b || *b < *a) return false;
    o.desde = *a;
    o.hasta = *b;
    return true;
}

bool eventos(std::string_view texto, Opciones& o) {
    o.solo.emplace();
    if (texto == "-") return true; // no event at all
    for (const std::string_view parte : partir(texto, ',')) {
        const auto n = entero(parte);
        if (!n || *n > std::numeric_limits<std::uint32_t>::max()) return false;
        o.solo->push_back(static_cast<std::uint32_t>(*n));
    }
    return true;
}

bool tamano(std::string_view texto, Opciones& o) {
    const auto partes = partir(texto, 'x');
    const auto c = entero(partes[0]);
    const auto b = partes.size() == 2 ? entero(partes[1]) : std::nullopt;
    if (!c || !b || *c < 1 || *c > 1000 || *b < 1 || *b > 100) return false;
    o.tamano = {static_cast<std::int64_t>(*c), static_cast<std::int64_t>(*b)};
    return true;
}

bool positivo(std::string_view texto, double& donde) {
    const auto n = numeroDeTexto(texto);
    if (!n || *n <= 0) return false;
    donde = *n;
    return true;
}

} // namespace

std::optional<Opciones> leerOpciones(int cuantos, const char* const* argumentos) {
    Opciones o;
    for (int i = 1; i < cuantos; ++i) {
        const std::string_view nombre = argumentos[i];
        if (nombre == "--sin-reducir") {
            o.reducir = false;
            continue;
        }
        if (nombre == "--primera") {
            o.primera = true;
            continue;
        }
        if (nombre == "--detalle") {
            o.detalle = true;
            continue;
        }
        if (nombre == "--trazas") {
            o.trazas = true;
            continue;
        }
        const std::string_view valor = i + 1 < cuantos ? argumentos[++i] : "";
        const bool bien = nombre == "--semillas"  ? semillas(valor, o)
                          : nombre == "--tamano"  ? tamano(valor, o)
                          : nombre == "--solo"    ? eventos(valor, o)
                          : nombre == "--horas"   ? positivo(valor, o.horas)
                          : nombre == "--cpu"     ? positivo(valor, o.cpuSegundos)
                          : nombre == "--cuelgue" ? positivo(valor, o.cuelgueSegundos)
                                                  : false;
        if (!bien) return std::nullopt;
    }
    return o;
}

} // namespace kv::mundo
