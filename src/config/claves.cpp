// SPDX-License-Identifier: Apache-2.0
#include "config/claves.h"

#include "config/ini.h"
#include "text/texto.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <span>

namespace kv {
namespace {

constexpr std::string_view kPuerto = "PUERTO";
constexpr std::string_view kEsclavo = "Esclavo";
constexpr std::string_view kBloque = "Bloque";

bool quitarPrefijo(std::string_view& texto, std::string_view prefijo) {
    if (!igualSinCaja(texto.substr(0, prefijo.size()), prefijo)) return false;
    texto.remove_prefix(prefijo.size());
    return true;
}

/// Takes a number off the front, written as keys are: in decimal, without leading zeros.
std::optional<std::uint32_t> quitarNumero(std::string_view& texto) {
    std::uint32_t numero = 0;
    const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), numero);
    if (r.ec != std::errc{} || (texto.front() == '0' && r.ptr != texto.data() + 1))
        return std::nullopt;
    texto.remove_prefix(static_cast<std::size_t>(r.ptr - texto.data()));
    return numero;
}

/// `esperado` is tried first: keys mostly come in the order of their table.
std::optional<std::uint8_t> campoDe(std::string_view nombre,
                                    std::span<const std::string_view> nombres,
                                    std::size_t esperado = 0) {
    if (esperado < nombres.size() && nombre == nombres[esperado])
        return static_cast<std::uint8_t>(esperado);
    for (std::size_t i = 0; i < nombres.size(); ++i) {
        if (igualSinCaja(nombre, nombres[i])) return static_cast<std::uint8_t>(i);
    }
    return std::nullopt;
}

DatoIni dato(const LineaIni& l, const char* base) {
    const auto inicio = l.valor.empty() ? 0 : l.valor.data() - base;
    DatoIni d;
    d.inicio = static_cast<std::uint32_t>(inicio);
    d.linea = static_cast<std::uint32_t>(l.numero);
    d.largo = static_cast<std::uint8_t>(l.valor.size());
    return d;
}

/// An entry's name without its field, "Bloque12_": the keys of an entry mostly follow one another,
/// and then the name need not be taken apart again.
struct Entrada {
    std::string_view nombre;
    std::uint32_t numero = 0;
    std::uint8_t siguiente = 0; ///< the field that would come next
    bool esBloque = false;
};

std::optional<Entrada> entradaDe(std::string_view clave) {
    std::string_view resto = clave;
    const bool esBloque = quitarPrefijo(resto, kBloque);
    if (!esBloque && !quitarPrefijo(resto, kEsclavo)) return std::nullopt;
    const auto numero = quitarNumero(resto);
    if (!numero || resto.empty() || resto.front() != '_') return std::nullopt;
    return Entrada{clave.substr(0, clave.size() - resto.size() + 1), *numero, 0, esBloque};
}

void clave(const LineaIni& l, const char* base, Entrada& reciente, SeccionDePuerto& seccion) {
    const bool sigue = !reciente.nombre.empty() && l.nombre.starts_with(reciente.nombre);
    const auto entrada = sigue ? reciente : entradaDe(l.nombre);
    if (!entrada) {
        const auto campo = campoDe(l.nombre, kCamposDePuerto);
        if (campo && seccion.propios[*campo].linea == 0) seccion.propios[*campo] = dato(l, base);
        return;
    }
    reciente = *entrada;
    const std::string_view sufijo = l.nombre.substr(entrada->nombre.size());
    const auto campo = entrada->esBloque ? campoDe(sufijo, kCamposDeBloque, entrada->siguiente)
                                         : campoDe(sufijo, kCamposDeEsclavo, entrada->siguiente);
    if (!campo) return;
    reciente.siguiente = static_cast<std::uint8_t>(*campo + 1);
    DatoIni d = dato(l, base);
    d.numero = entrada->numero;
    d.campo = *campo;
    (entrada->esBloque ? seccion.bloques : seccion.esclavos).push_back(d);
}

Trabajo ordenar(std::vector<DatoIni>& datos, Porciones& porciones) {
    const auto antes = [](const DatoIni& a, const DatoIni& b) { return a.numero < b.numero; };
    const auto lugar = [&datos](std::size_t n) {
        return datos.begin() + static_cast<std::ptrdiff_t>(std::min(n, datos.size()));
    };
    // Written by a program they stand in order; by hand, mostly.
    if (std::is_sorted(datos.begin(), datos.end(), antes)) co_return;
    constexpr std::size_t kTramo = 4096;
    for (std::size_t i = 0; i < datos.size(); i += kTramo) {
        std::stable_sort(lugar(i), lugar(i + kTramo), antes);
        co_await porciones.gastar(kTramo);
    }
    for (std::size_t tramo = kTramo; tramo < datos.size(); tramo *= 2) {
        for (std::size_t i = 0; i + tramo < datos.size(); i += 2 * tramo) {
            std::inplace_merge(lugar(i), lugar(i + tramo), lugar(i + 2 * tramo), antes);
            co_await porciones.gastar(static_cast<std::int64_t>(tramo));
        }
    }
}

/// The section that a line begins: its ordinal, or 0 when it is not a port's.
std::uint32_t ordinalDe(const LineaIni& l) {
    std::string_view resto = l.nombre;
    if (!quitarPrefijo(resto, kPuerto)) return 0;
    const auto ordinal = quitarNumero(resto);
    return ordinal && *ordinal <= kMaximoDePuertos && resto.empty() ? *ordinal : 0;
}

} // namespace

Trabajo ClavesDeDriver::leer(std::string_view contenido, Porciones& porciones) {
    constexpr std::int64_t kPorLinea = 2;
    SeccionDePuerto* seccion = nullptr;
    Entrada reciente;
    bool enConfig = false;
    bool huboConfig = false;
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        co_await porciones.gastar(kPorLinea);
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Clave) {
            if (seccion != nullptr) {
                clave(l, contenido.data(), reciente, *seccion);
            } else if (enConfig && cantPuertos.linea == 0 &&
                       igualSinCaja(l.nombre, "CANT_PUERTOS")) {
                cantPuertos = dato(l, contenido.data());
            }
        } else if (l.clase == LineaIni::Clase::Seccion) {
            seccion = nullptr;
            enConfig = !huboConfig && igualSinCaja(l.nombre, "CONFIG");
            huboConfig = huboConfig || enConfig;
            const std::uint32_t ordinal = ordinalDe(l);
            if (ordinal == 0) continue;
            const auto [lugar, nueva] = puertos.try_emplace(ordinal);
            if (!nueva) continue;
            seccion = &lugar->second;
            seccion->linea = static_cast<std::uint32_t>(l.numero);
        }
    }
    for (auto& [ordinal, s] : puertos) {
        co_await ordenar(s.esclavos, porciones);
        co_await ordenar(s.bloques, porciones);
    }
}

} // namespace kv
