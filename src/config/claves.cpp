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

std::optional<std::uint8_t> campoDe(std::string_view nombre,
                                    std::span<const std::string_view> nombres) {
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

/// "Bloque12_PLC" goes to `destino` as number 12, field PLC. False when the key is nothing of the
/// kind.
bool entrada(const LineaIni& l, const char* base, std::string_view prefijo,
             std::span<const std::string_view> nombres, std::vector<DatoIni>& destino) {
    std::string_view resto = l.nombre;
    if (!quitarPrefijo(resto, prefijo)) return false;
    const auto numero = quitarNumero(resto);
    if (!numero || resto.empty() || resto.front() != '_') return false;
    const auto campo = campoDe(resto.substr(1), nombres);
    if (!campo) return false;
    DatoIni d = dato(l, base);
    d.numero = *numero;
    d.campo = *campo;
    destino.push_back(d);
    return true;
}

void clave(const LineaIni& l, const char* base, SeccionDePuerto& seccion) {
    if (entrada(l, base, kBloque, kCamposDeBloque, seccion.bloques)) return;
    if (entrada(l, base, kEsclavo, kCamposDeEsclavo, seccion.esclavos)) return;
    const auto campo = campoDe(l.nombre, kCamposDePuerto);
    if (campo && seccion.propios[*campo].linea == 0) seccion.propios[*campo] = dato(l, base);
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
    bool enConfig = false;
    bool huboConfig = false;
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Clave) {
            if (seccion != nullptr) {
                clave(l, contenido.data(), *seccion);
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
