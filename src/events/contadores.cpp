// SPDX-License-Identifier: Apache-2.0
#include "events/contadores.h"

#include <algorithm>

namespace kv {
namespace {

// The line's shares are those of this long to twice as long.
constexpr std::int64_t kLapsoUs = 300'000'000;
constexpr float kPesoDeUnaRespuesta = 1.0F / 8;

void sumar(RepartoDeLinea& a, const RepartoDeLinea& b) {
    a.respuestas += b.respuestas;
    a.silencio += b.silencio;
    a.pausas += b.pausas;
    a.libre += b.libre;
}

void sumar(Cuentas& a, const Cuentas& b) {
    a.pedidos += b.pedidos;
    a.respuestas += b.respuestas;
    a.vencidos += b.vencidos;
    a.reintentos += b.reintentos;
    a.dudosas += b.dudosas;
    a.sobrantes += b.sobrantes;
    a.descartes += b.descartes;
    a.bytesDescartados += b.bytesDescartados;
    a.peorUs = std::max(a.peorUs, b.peorUs);
    if (b.ultimaRespuestaMs < a.ultimaRespuestaMs || b.respuestas == 0) return;
    a.ultimaRespuestaMs = b.ultimaRespuestaMs;
    a.ultimoUs = b.ultimoUs;
}

} // namespace

Contadores::Contadores(Sucesos& sucesos, const Tablas& tablas)
    : sucesos_(sucesos), tablas_(tablas) {
    sucesos_.avisarA(
        this, kSalidas | bitsDe({Que::Recepcion, Que::TiempoFuera, Que::TiempoFueraDeEscritura,
                                 Que::PausaEmpieza, Que::Sobrante, Que::Descarte,
                                 Que::LineaRetenida, Que::EnlaceAbajo}));
}

void Contadores::alSuceder(const Suceso& s, std::string_view /*texto*/) {
    if (s.conexion == kNinguno) return;
    if (s.conexion >= conexiones_.size()) conexiones_.resize(s.conexion + std::size_t{1});
    DeConexion& c = conexiones_[s.conexion];
    if (contiene(kSalidas, s.que)) return alSalir(s, c);
    switch (s.que) {
    case Que::Recepcion:
        return alContestar(s, c);
    case Que::TiempoFuera:
    case Que::TiempoFueraDeEscritura:
        return alVencer(s, c);
    case Que::PausaEmpieza:
        return alPausar(s, c);
    case Que::Sobrante:
    case Que::Descarte:
        return alDescartar(s, c);
    case Que::LineaRetenida:
        c.retenida = true;
        return;
    case Que::EnlaceAbajo:
        if (!s.callado) ++c.caidas;
        c.pedido = Pedido::Ninguno;
        c.retenida = false;
        return;
    default:
        return;
    }
}

void Contadores::alSalir(const Suceso& s, DeConexion& c) {
    const std::int64_t ahoraUs = tablas_.conexiones[s.conexion].enviadoUs;
    if (c.pedido == Pedido::Terminado) sumarHueco(c, ahoraUs);
    if (ahoraUs - c.lapsoUs > kLapsoUs) {
        c.anterior = ahoraUs - c.lapsoUs > 2 * kLapsoUs ? RepartoDeLinea{} : c.reciente;
        c.reciente = {};
        c.lapsoUs = ahoraUs;
    }
    c.pedido = Pedido::Fuera;
    c.retenida = false;
    c.estacion = tablas_.bloques[s.bloque].idEstacion;
    if (c.estacion >= c.estaciones.size()) c.estaciones.resize(c.estacion + std::size_t{1});
    Cuentas& cuentas = c.estaciones[c.estacion].cuentas;
    ++cuentas.pedidos;
    if (contiene(kRepeticiones, s.que)) ++cuentas.reintentos;
}

/// What lies between the end of a request and the next one.
void Contadores::sumarHueco(DeConexion& c, std::int64_t ahoraUs) {
    const std::int64_t hueco = std::max<std::int64_t>(0, ahoraUs - c.finUs);
    const auto pausa = std::min(hueco, static_cast<std::int64_t>(c.pausaUs));
    c.reciente.pausas += pausa;
    (c.retenida ? c.reciente.silencio : c.reciente.libre) += hueco - pausa;
}

void Contadores::alContestar(const Suceso& s, DeConexion& c) {
    if (c.pedido != Pedido::Fuera && c.pedido != Pedido::Dudoso) return;
    const ConexionIP& linea = tablas_.conexiones[s.conexion];
    const std::int64_t us = std::max<std::int64_t>(0, linea.recibidoUs - linea.enviadoUs);
    c.pedido = Pedido::Terminado;
    c.finUs = linea.recibidoUs;
    c.reciente.respuestas += us;
    c.usualUs += (static_cast<float>(us) - c.usualUs) * (c.usualUs > 0 ? kPesoDeUnaRespuesta : 1);
    DeEstacion& e = c.estaciones[c.estacion];
    e.cuentas.ultimaRespuestaMs = linea.recibidoUs / 1000;
    e.cuentas.ultimoUs = us;
    e.cuentas.peorUs = std::max(e.cuentas.peorUs, us);
    e.muestras[e.cuentas.respuestas++ % kMuestras] =
        static_cast<std::uint32_t>(std::min<std::int64_t>(us, UINT32_MAX));
}

void Contadores::alVencer(const Suceso& s, DeConexion& c) {
    if (c.pedido != Pedido::Fuera && c.pedido != Pedido::Dudoso) return;
    // A read's is as long as its block's, which spares a look at the clock; a write says how long
    // it waited.
    const std::int64_t ms = s.que == Que::TiempoFuera ? tablas_.bloques[s.bloque].tiempoFueraMs
                                                      : static_cast<std::int64_t>(s.numero);
    const std::int64_t us = ms * 1000;
    ++c.estaciones[c.estacion].cuentas.vencidos;
    c.pedido = Pedido::Terminado;
    c.pausaUs = 0;
    c.finUs = tablas_.conexiones[s.conexion].enviadoUs + us;
    c.reciente.silencio += us;
}

void Contadores::alPausar(const Suceso& s, DeConexion& c) {
    if (c.pedido == Pedido::Fuera || c.pedido == Pedido::Dudoso) {
        const ConexionIP& linea = tablas_.conexiones[s.conexion];
        if (c.pedido == Pedido::Dudoso) ++c.estaciones[c.estacion].cuentas.dudosas;
        c.finUs = std::max(linea.enviadoUs, linea.recibidoUs);
        c.reciente.silencio += c.finUs - linea.enviadoUs;
        c.pedido = Pedido::Terminado;
    }
    c.pausaUs = static_cast<float>(s.numero) * 1000;
}

void Contadores::alDescartar(const Suceso& s, DeConexion& c) {
    if (c.estaciones.empty()) c.estaciones.resize(1);
    Cuentas& cuentas = c.estaciones[c.estacion].cuentas;
    if (s.que == Que::Sobrante) {
        cuentas.sobrantes += static_cast<std::uint64_t>(s.numero);
        if (c.pedido == Pedido::Fuera) c.pedido = Pedido::Dudoso;
        return;
    }
    ++cuentas.descartes;
    cuentas.bytesDescartados += static_cast<std::uint64_t>(s.numero);
}

std::vector<std::uint32_t> Contadores::muestrasDe(const DeEstacion& e) {
    const auto cuantas = std::min<std::size_t>(e.cuentas.respuestas, kMuestras);
    return {e.muestras.begin(), e.muestras.begin() + static_cast<std::ptrdiff_t>(cuantas)};
}

void Contadores::poner(Cuentas& destino, std::vector<std::uint32_t> muestras) {
    if (muestras.empty()) return;
    const auto medio = muestras.begin() + static_cast<std::ptrdiff_t>(muestras.size() / 2);
    std::nth_element(muestras.begin(), medio, muestras.end());
    destino.medianoUs = *medio;
}

CuentasDeConexion Contadores::deConexion(Indice conexion) const {
    CuentasDeConexion suma;
    if (conexion >= conexiones_.size()) return suma;
    const DeConexion& c = conexiones_[conexion];
    std::vector<std::uint32_t> muestras;
    for (const DeEstacion& e : c.estaciones) {
        sumar(suma, e.cuentas);
        const auto suyas = muestrasDe(e);
        muestras.insert(muestras.end(), suyas.begin(), suyas.end());
    }
    poner(suma, std::move(muestras));
    suma.caidas = c.caidas;
    sumar(suma.reparto, c.reciente);
    sumar(suma.reparto, c.anterior);
    return suma;
}

Cuentas Contadores::deEstacion(Indice conexion, Indice estacion) const {
    if (conexion >= conexiones_.size() || estacion >= conexiones_[conexion].estaciones.size())
        return {};
    const DeEstacion& e = conexiones_[conexion].estaciones[estacion];
    Cuentas cuentas = e.cuentas;
    poner(cuentas, muestrasDe(e));
    return cuentas;
}

std::int64_t Contadores::respuestaUsualUs(Indice conexion) const {
    return conexion < conexiones_.size() ? static_cast<std::int64_t>(conexiones_[conexion].usualUs)
                                         : 0;
}

} // namespace kv
