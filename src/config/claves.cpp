// SPDX-License-Identifier: Apache-2.0
#include "config/claves.h"

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

void ordenar(std::vector<DatoIni>& datos) {
    const auto antes = [](const DatoIni& a, const DatoIni& b) { return a.numero < b.numero; };
    // Written by a program they stand in order; by hand, mostly.
    if (!std::is_sorted(datos.begin(), datos.end(), antes))
        std::stable_sort(datos.begin(), datos.end(), antes);
}

} // namespace

ClavesDeDriver ClavesDeDriver::de(std::string_view contenido) {
    ClavesDeDriver claves;
    SeccionDePuerto* seccion = nullptr;
    Entrada reciente;
    bool enConfig = false;
    bool huboConfig = false;
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Clave) {
            if (seccion != nullptr) {
                clave(l, contenido.data(), reciente, *seccion);
            } else if (enConfig && claves.cantPuertos.linea == 0 &&
                       igualSinCaja(l.nombre, "CANT_PUERTOS")) {
                claves.cantPuertos = dato(l, contenido.data());
            }
        } else if (l.clase == LineaIni::Clase::Seccion) {
            seccion = nullptr;
            enConfig = !huboConfig && igualSinCaja(l.nombre, "CONFIG");
            huboConfig = huboConfig || enConfig;
            std::string_view resto = l.nombre;
            if (!quitarPrefijo(resto, kPuerto)) continue;
            const auto ordinal = quitarNumero(resto);
            if (!ordinal || *ordinal == 0 || *ordinal > kMaximoDePuertos || !resto.empty())
                continue;
            const auto [lugar, nueva] = claves.puertos.try_emplace(*ordinal);
            if (!nueva) continue;
            seccion = &lugar->second;
            seccion->linea = static_cast<std::uint32_t>(l.numero);
        }
    }
    for (auto& [ordinal, s] : claves.puertos) {
        ordenar(s.esclavos);
        ordenar(s.bloques);
    }
    return claves;
}

} // namespace kv
