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

void claveDePuerto(const LineaIni& l, const char* base, SeccionDePuerto& seccion,
                   Desconocidas& desconocidas) {
    const auto campo = campoDe(l.nombre, kCamposDePuerto);
    if (!campo)
        return desconocidas.hallada("una clave de un puerto", l.nombre, l.nombre, l.numero,
                                    kCamposDePuerto);
    if (seccion.propios[*campo].linea == 0)
        seccion.propios[*campo] = dato(l, base);
    else if (seccion.repetidos[*campo] == 0)
        seccion.repetidos[*campo] = static_cast<std::uint32_t>(l.numero);
}

void clave(const LineaIni& l, const char* base, Reciente& reciente, SeccionDePuerto& seccion,
           Desconocidas& desconocidas) {
    const EntradaDePuerto& e = reciente.entrada;
    if (e.nombre.empty() || !l.nombre.starts_with(e.nombre)) {
        const auto otra = entradaDe(l.nombre);
        if (!otra) return claveDePuerto(l, base, seccion, desconocidas);
        reciente = {*otra, 0};
    }
    const std::string_view sufijo = l.nombre.substr(e.nombre.size());
    const std::span<const std::string_view> campos =
        e.esBloque ? std::span<const std::string_view>(kCamposDeBloque) : kCamposDeEsclavo;
    const auto campo = campoDe(sufijo, campos, reciente.siguiente);
    if (!campo)
        return desconocidas.hallada(e.esBloque ? "un dato de un bloque" : "un dato de una estación",
                                    sufijo, l.nombre, l.numero, campos);
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

namespace {

/// Goes from section to section of a driver configuration.
class Despacho {
  public:
    Despacho(ClavesDeDriver& claves, std::string_view contenido, Desconocidas& desconocidas)
        : c_(claves), contenido_(contenido), desconocidas_(desconocidas) {}

    void linea(const LineaIni& l) {
        if (l.clase == LineaIni::Clase::Seccion)
            seccion(l);
        else if (seccion_ == nullptr && !enConfig_)
            return;
        else if (l.clase == LineaIni::Clase::Otra)
            desconocidas_.sinIgual(l, contenido_);
        else if (seccion_ != nullptr)
            clave(l, contenido_.data(), reciente_, *seccion_, desconocidas_);
        else
            deConfig(l);
    }

  private:
    static void anotar(std::uint32_t& linea, const LineaIni& l) {
        if (linea == 0) linea = static_cast<std::uint32_t>(l.numero);
    }
    void deConfig(const LineaIni& l) {
        constexpr std::array<std::string_view, 1> kDeConfig = {kCantPuertos};
        if (!igualSinCaja(l.nombre, kCantPuertos))
            desconocidas_.hallada("una clave de [CONFIG]", l.nombre, l.nombre, l.numero, kDeConfig);
        else if (c_.cantPuertos.linea == 0)
            c_.cantPuertos = dato(l, contenido_.data());
        else
            anotar(c_.cantPuertosRepetida, l);
    }
    void seccion(const LineaIni& l) {
        constexpr std::array<std::string_view, 2> kSecciones = {kSeccionDeConfig, "PUERTO1"};
        seccion_ = nullptr;
        const bool esConfig = igualSinCaja(l.nombre, kSeccionDeConfig);
        enConfig_ = esConfig && c_.lineaDeConfig == 0;
        if (esConfig) return anotar(enConfig_ ? c_.lineaDeConfig : c_.configRepetida, l);
        const std::uint32_t ordinal = ordinalDePuerto(l.nombre);
        if (ordinal == 0)
            return desconocidas_.hallada("una sección conocida", l.nombre, l.nombre, l.numero,
                                         kSecciones);
        const auto [lugar, nueva] = c_.puertos.try_emplace(ordinal);
        anotar(nueva ? lugar->second.linea : lugar->second.repetida, l);
        if (nueva) seccion_ = &lugar->second;
    }

    ClavesDeDriver& c_;
    std::string_view contenido_;
    Desconocidas& desconocidas_;
    SeccionDePuerto* seccion_ = nullptr; ///< null outside those that count
    Reciente reciente_;
    bool enConfig_ = false;
};

} // namespace

Trabajo ClavesDeDriver::leer(std::string_view contenido, Desconocidas& desconocidas,
                             Porciones& porciones) {
    constexpr std::int64_t kPorLinea = 2;
    Despacho despacho(*this, contenido, desconocidas);
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        co_await porciones.gastar(kPorLinea);
        despacho.linea(lector.linea());
    }
    for (auto& [ordinal, s] : puertos) {
        co_await ordenar(s.esclavos, porciones);
        co_await ordenar(s.bloques, porciones);
    }
}

} // namespace kv
