// SPDX-License-Identifier: Apache-2.0
#include "link/conexiones.h"

#include "platform/motivo_de_enlace.h"
#include "text/numeros.h"
#include "view/columnas.h"

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kSupervisionMs = 5000;

// A link to a fast station is given so long all the same to have its bytes acknowledged: one lost
// packet is sent again after some tenths of a second.
constexpr std::int64_t kPacienciaMinimaMs = 3000;

using namespace de_conexiones;

std::string deTantos(double cuantos, double maximo) {
    std::string texto = textoDeNumero(cuantos);
    texto += '/';
    agregarNumero(texto, maximo);
    return texto;
}

} // namespace

GestorDeConexiones::GestorDeConexiones(Bucle& bucle, Tablas& tablas, Turnos& turnos,
                                       OyenteDeZocalo& recepcion, Sucesos& sucesos, Vista& vista,
                                       AjustesDeConexion& ajustes, AlCambiarConexion& destino)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), recepcion_(recepcion), sucesos_(sucesos),
      vista_(vista), ajustes_(ajustes), destino_(destino),
      TimerConexiones_(bucle.crearTemporizador([this] { estadoConexiones(); })),
      timer_SolicitarConexion_(bucle.crearTemporizador([this] { ticSolicitarConexion(); })) {
    TimerConexiones_->fijarIntervalo(kSupervisionMs);
}

void GestorDeConexiones::levantarZocalo() {
    const auto i = static_cast<Indice>(wsSocket_.size());
    wsSocket_.push_back(bucle_.crearZocalo(recepcion_, i));
    turnos_.agregarConexion(*wsSocket_.back());
}

void GestorDeConexiones::retirar(Indice n) {
    tablas_.conexiones[n].retirada = true;
    wsSocket_[n]->abortar();
    if (tablas_.conexiones[n].estadoSupervision == 1) pasarA(n, false);
    vista_.lstViewSockets.retirar(tablas_.conexiones[n].filaLista);
}

void GestorDeConexiones::estadoConexiones() {
    bool hacenFaltaSolicitudes = false;
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n)
        supervisar(static_cast<Indice>(n), hacenFaltaSolicitudes);
    turnos_.fijarPausa(ajustes_.tiempoEntrePoleo());
    if (!hacenFaltaSolicitudes) return timer_SolicitarConexion_->habilitar(false);
    intervalosEnEstadoConectando_ = ajustes_.intervalosEnEstadoConectando();
    intervalosDeConectarSeguidos_ = ajustes_.intervalosDeConectarSeguidos();
    intervalosTiempoFuera_ = ajustes_.intervalosTiempoFuera();
    const auto periodo = std::llround(ajustes_.baseDeSolicitudes());
    if (!timer_SolicitarConexion_->habilitado() || timer_SolicitarConexion_->intervalo() != periodo)
        timer_SolicitarConexion_->rearmar(periodo);
}

void GestorDeConexiones::supervisar(Indice n, bool& hacenFaltaSolicitudes) {
    ConexionIP& c = tablas_.conexiones[n];
    if (c.retirada) return;
    const EstadoZocalo estado = wsSocket_[n]->estado();
    const bool conectada = estado == EstadoZocalo::Conectado;
    const bool conectando = estado == EstadoZocalo::Cerrado || estado == EstadoZocalo::Conectando;
    vista_.lstViewSockets.poner(c.filaLista, kEstado,
                                conectada    ? kConectado
                                : conectando ? "Conectando..."
                                             : "NO Conectado");
    if (!conectada) hacenFaltaSolicitudes = true;
    if (!conectando && !conectada) anotarMotivo(n);
    const bool estaba = c.estadoSupervision == 1;
    const std::uint64_t enlace = wsSocket_[n]->conexiones();
    // A link that went and came back between two passes was lost all the same.
    if (estaba && (!conectada || enlace != c.enlaceSupervisado)) {
        // A peer that has only closed its side may still take what waits, and that is given up now.
        if (!conectada) wsSocket_[n]->abortar();
        pasarA(n, false);
    }
    if (conectada && tablas_.conexiones[n].estadoSupervision == 0) {
        tablas_.conexiones[n].enlaceSupervisado = enlace;
        pasarA(n, true);
    }
}

void GestorDeConexiones::pasarA(Indice n, bool conectada) {
    // Stored first: a cascade that fails half-way must not be run again at every pass.
    ConexionIP& c = tablas_.conexiones[n];
    c.estadoSupervision = conectada ? 1 : 0;
    c.enlaceDesde = Momento(bucle_.reloj().monotonicoMs());
    if (conectada) c.motivo.clear();
    c.dichoSinEnlace = !conectada;
    // One that a reload takes away is closed on request: nobody's alarm.
    sucesos_.decir({.que = conectada ? Que::EnlaceArriba : Que::EnlaceAbajo,
                    .conexion = n,
                    .callado = c.retirada});
    if (conectada) return destino_.activarPoling_En_Socket(n);
    destino_.desActivarPoling_En_Socket(n);
    destino_.establecerBAD_En_Socket(n);
}

void GestorDeConexiones::ticSolicitarConexion() {
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        solicitar(static_cast<Indice>(n));
        refrescarFila(static_cast<Indice>(n));
    }
}

void GestorDeConexiones::solicitar(Indice n) {
    ConexionIP& c = tablas_.conexiones[n];
    Zocalo& zocalo = *wsSocket_[n];
    if (c.retirada) return;
    if (c.enTiempoFuera) {
        if (c.contadorTiempoFuera < intervalosTiempoFuera_) {
            c.contadorTiempoFuera += 1;
        } else {
            c.enTiempoFuera = false;
            c.contadorTiempoFuera = 0;
        }
        return;
    }
    if (zocalo.estado() == EstadoZocalo::Conectado) return;
    if (c.contadorIntervalos == 0) {
        c.contadorSolicitudes += 1;
        c.contadorIntervalos += 1;
        anotarMotivo(n);
        zocalo.abortar();
        zocalo.fijarPaciencia(std::max(c.pacienciaMs, kPacienciaMinimaMs));
        zocalo.conectar(c.ip, c.numeroDePuertoTCP);
    } else if (c.contadorIntervalos < intervalosEnEstadoConectando_) {
        c.contadorIntervalos += 1;
    } else {
        c.contadorIntervalos = 0;
    }
    if (c.contadorSolicitudes >= intervalosDeConectarSeguidos_) {
        // An attempt that has just begun has shown nothing; what has ended has.
        if (zocalo.estado() != EstadoZocalo::Conectando) anotarMotivo(n);
        zocalo.abortar();
        c.enTiempoFuera = true;
        c.contadorSolicitudes = c.contadorTiempoFuera = c.contadorIntervalos = 0;
        if (!std::exchange(c.dichoSinEnlace, true))
            sucesos_.decir({.que = Que::EnlaceNoLevanta, .conexion = n});
    }
}

/// Before the socket forgets it.
void GestorDeConexiones::anotarMotivo(Indice n) {
    const bool seAbandona = wsSocket_[n]->estado() == EstadoZocalo::Conectando;
    tablas_.conexiones[n].motivo = seAbandona && !perdidaSinVer(n)
                                       ? motivoDeEnlace(ETIMEDOUT, FaseDeEnlace::AlConectar)
                                       : porQueNoHayEnlace(n);
}

bool GestorDeConexiones::perdidaSinVer(Indice n) const {
    const ConexionIP& c = tablas_.conexiones[n];
    return c.estadoSupervision == 1 && !c.motivo.empty();
}

std::string GestorDeConexiones::porQueNoHayEnlace(Indice n) const {
    const std::string& sabido = tablas_.conexiones[n].motivo;
    const Zocalo& zocalo = *wsSocket_[n];
    if (perdidaSinVer(n)) return sabido;
    if (zocalo.estado() == EstadoZocalo::Error) return zocalo.motivo();
    if (zocalo.estado() == EstadoZocalo::CerradoPorElOtro)
        return motivoDeEnlace(EPIPE, FaseDeEnlace::Establecido);
    return sabido;
}

std::int64_t GestorDeConexiones::proximoIntentoMs(Indice n) const {
    const ConexionIP& c = tablas_.conexiones[n];
    const bool corre = timer_SolicitarConexion_->habilitado();
    const Temporizador& proximo = corre ? *timer_SolicitarConexion_ : *TimerConexiones_;
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    const std::int64_t primero = std::max<std::int64_t>(0, proximo.venceMs() - ahora);
    // So many ticks pass before the one that tries again; see `solicitar`.
    double antes = 0;
    if (c.enTiempoFuera) {
        antes = std::max(0.0, intervalosTiempoFuera_ - c.contadorTiempoFuera) + 1;
    } else if (c.contadorIntervalos > 0) {
        antes = std::max(0.0, std::ceil(intervalosEnEstadoConectando_ - c.contadorIntervalos)) + 1;
    }
    if (!corre) antes += 1;
    return primero + static_cast<std::int64_t>(
                         antes * static_cast<double>(timer_SolicitarConexion_->intervalo()));
}

void GestorDeConexiones::refrescarFila(Indice n) {
    const ConexionIP& c = tablas_.conexiones[n];
    Lista& lista = vista_.lstViewSockets;
    lista.poner(c.filaLista, kBaseDeTiempo,
                textoDeNumero(static_cast<double>(timer_SolicitarConexion_->intervalo())));
    lista.poner(c.filaLista, kIntervalos,
                deTantos(c.contadorIntervalos, intervalosEnEstadoConectando_));
    lista.poner(c.filaLista, kSolicitudes,
                deTantos(c.contadorSolicitudes, intervalosDeConectarSeguidos_));
    lista.poner(c.filaLista, kTiempoFuera, deTantos(c.contadorTiempoFuera, intervalosTiempoFuera_));
}

} // namespace kv
