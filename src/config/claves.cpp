// SPDX-License-Identifier: Apache-2.0
#include "config/claves.h"

#include "config/ini.h"
#include "text/texto.h"

#include <algorithm>
#include <charconv>
#include <span>

namespace kv {
namespace {

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

/// The keys of an entry mostly follow one another, and then its name need not be taken apart again.
struct Reciente {
    EntradaDePuerto entrada;
    std::uint8_t siguiente = 0; ///< the field that would come next
};

void clave(const LineaIni& l, const char* base, Reciente& reciente, SeccionDePuerto& seccion) {
    const EntradaDePuerto& e = reciente.entrada;
    if (e.nombre.empty() || !l.nombre.starts_with(e.nombre)) {
        const auto otra = entradaDe(l.nombre);
        if (!otra) {
            const auto campo = campoDe(l.nombre, kCamposDePuerto);
            if (campo && seccion.propios[*campo].linea == 0)
                seccion.propios[*campo] = dato(l, base);
            return;
        }
        reciente = {*otra, 0};
    }
    const std::string_view sufijo = l.nombre.substr(e.nombre.size());
    const auto campo = e.esBloque ? campoDe(sufijo, kCamposDeBloque, reciente.siguiente)
                                  : campoDe(sufijo, kCamposDeEsclavo, reciente.siguiente);
    if (!campo) return;
    reciente.siguiente = static_cast<std::uint8_t>(*campo + 1);
    DatoIni d = dato(l, base);
    d.numero = e.numero;
    d.campo = *campo;
    (e.esBloque ? seccion.bloques : seccion.esclavos).push_back(d);
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

} // namespace

std::optional<EntradaDePuerto> entradaDe(std::string_view clave) {
    std::string_view resto = clave;
    const bool esBloque = quitarPrefijo(resto, kPrefijoDeBloque);
    if (!esBloque && !quitarPrefijo(resto, kPrefijoDeEsclavo)) return std::nullopt;
    const auto numero = quitarNumero(resto);
    if (!numero || resto.empty() || resto.front() != '_') return std::nullopt;
    return EntradaDePuerto{clave.substr(0, clave.size() - resto.size() + 1), *numero, esBloque};
}

std::uint32_t ordinalDePuerto(std::string_view seccion) {
    if (!quitarPrefijo(seccion, kPrefijoDePuerto)) return 0;
    const auto ordinal = quitarNumero(seccion);
    return ordinal && *ordinal <= kMaximoDePuertos && seccion.empty() ? *ordinal : 0;
}

Trabajo ClavesDeDriver::leer(std::string_view contenido, Porciones& porciones) {
    constexpr std::int64_t kPorLinea = 2;
    SeccionDePuerto* seccion = nullptr;
    Reciente reciente;
    bool enConfig = false;
    bool huboConfig = false;
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        co_await porciones.gastar(kPorLinea);
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Clave) {
            if (seccion != nullptr) {
                clave(l, contenido.data(), reciente, *seccion);
            } else if (enConfig && cantPuertos.linea == 0 && igualSinCaja(l.nombre, kCantPuertos)) {
                cantPuertos = dato(l, contenido.data());
            }
        } else if (l.clase == LineaIni::Clase::Seccion) {
            seccion = nullptr;
            enConfig = !huboConfig && igualSinCaja(l.nombre, kSeccionDeConfig);
            huboConfig = huboConfig || enConfig;
            const std::uint32_t ordinal = ordinalDePuerto(l.nombre);
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
