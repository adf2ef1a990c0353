// SPDX-License-Identifier: Apache-2.0
#include "link/turno.h"

#include "platform/motivo_de_enlace.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

namespace kv {
namespace {

// A line that has been held back for so many time-outs without falling silent will not do so: the
// link is closed, and a new one owes nothing.
constexpr std::int64_t kTiemposRetenida = 12;

std::int64_t enMs(double ms) { return std::max<std::int64_t>(1, std::llround(ms)); }

} // namespace

Turnos::Turnos(Bucle& bucle, Tablas& tablas, Sucesos& sucesos, ArchivoLog& log,
               AlQuedarLibre& destino)
    : bucle_(bucle), tablas_(tablas), sucesos_(sucesos), log_(log), destino_(destino) {}

Turnos::Companeros::Companeros(Turnos& turnos, Zocalo& suyo, Indice conexion)
    : zocalo(suyo), Timer_TimerPorIPPuerto(turnos.bucle_.temporizadores(),
                                           AlTicar::a<&Turnos::ticTiempoFuera>(turnos, conexion)),
      Timer_IntervaloEntrePoleo(turnos.bucle_.temporizadores(),
                                AlTicar::a<&Turnos::ticPausa>(turnos, conexion)) {
    Timer_IntervaloEntrePoleo.tocarUnaVez();
}

void Turnos::agregarConexion(Zocalo& zocalo) {
    companeros_.emplace_back(*this, zocalo, static_cast<Indice>(companeros_.size()));
}

bool Turnos::conectada(Indice conexion) const {
    if (conexion >= companeros_.size()) return false;
    const ConexionIP& c = tablas_.conexiones[conexion];
    const Zocalo& z = companeros_[conexion].zocalo;
    return z.estado() == EstadoZocalo::Conectado && c.estadoSupervision == 1 &&
           c.enlaceSupervisado == z.conexiones();
}

int Turnos::temporizadoresEncendidos(Indice conexion) const {
    const Companeros& timers = companeros_[conexion];
    return (timers.Timer_TimerPorIPPuerto.habilitado() ? 1 : 0) +
           (timers.Timer_IntervaloEntrePoleo.habilitado() ? 1 : 0);
}

bool Turnos::libre(Indice conexion) const {
    if (conexion >= companeros_.size()) return false;
    return tablas_.conexiones[conexion].turno == EstadoDeTurno::Libre && conectada(conexion);
}

bool Turnos::llegoTodo(Indice conexion) const {
    return companeros_[conexion].zocalo.bytesSinConfirmar() == 0;
}

RespuestasDebidas::Permiso Turnos::permiso(Indice conexion,
                                           RespuestasDebidas::Registro registro) const {
    const RespuestasDebidas& debidas = tablas_.conexiones[conexion].debidas;
    // Asking the socket is a system call, which a line in good order does not need.
    if (debidas.limpia()) return {};
    return debidas.permiso(registro, bucle_.reloj().monotonicoMs(), llegoTodo(conexion));
}

Turnos::Envio Turnos::enviar(Indice conexion, Transaccion& de, const Solicitud& trama,
                             std::int64_t plazoMs) {
    return enviar(conexion, de, trama, plazoMs, registroDe(trama));
}

Turnos::Envio Turnos::enviar(Indice conexion, Transaccion& de, const Solicitud& trama,
                             std::int64_t plazoMs, RespuestasDebidas::Registro registro) {
    if (!libre(conexion)) return Envio::Imposible;
    ConexionIP& c = tablas_.conexiones[conexion];
    const auto permiso = this->permiso(conexion, registro);
    if (permiso.esperaMs > 0) {
        retener(conexion, permiso.esperaMs);
        return Envio::Retenido;
    }
    c.turno = EstadoDeTurno::Esperando;
    c.registroEnCurso = registro;
    companeros_[conexion].enCurso = &de;
    mandar(conexion, trama, plazoMs);
    return Envio::Hecho;
}

void Turnos::reenviar(Indice conexion, const Solicitud& trama, std::int64_t plazoMs) {
    if (!conectada(conexion) || tablas_.conexiones[conexion].turno != EstadoDeTurno::Esperando)
        return;
    mandar(conexion, trama, plazoMs);
}

void Turnos::mandar(Indice conexion, const Solicitud& trama, std::int64_t plazoMs) {
    ConexionIP& c = tablas_.conexiones[conexion];
    c.llegoBasura = false;
    c.enviadoUs = bucle_.reloj().monotonicoUs();
    // What has come of an answer belongs to an earlier request than the one that leaves now.
    vaciarRecepcion(conexion);
    c.debidas.alEnviar(c.registroEnCurso, c.enviadoUs / 1000, plazoMs,
                       c.debidas.limpia() || llegoTodo(conexion));
    c.tramaEnCurso = trama;
    // Armed before the send: an answer that is handled while events run must find it armed.
    companeros_[conexion].Timer_TimerPorIPPuerto.rearmar(plazoMs, c.enviadoUs);
    companeros_[conexion].zocalo.enviar(trama);
}

void Turnos::moverTiempoFuera(Indice conexion, std::int64_t ms) {
    companeros_[conexion].Timer_TimerPorIPPuerto.rearmar(ms);
}

std::int64_t Turnos::descanso(const BloqueLectura& b) const {
    const ConexionIP& c = tablas_.conexiones[b.idConexion];
    const bool cuesta = c.bloques.size() > 1 && !c.debidas.limpia() && !c.debidas.dicen();
    return b.reconeccionMs + (cuesta ? c.debidas.silencioMs() + enMs(pausaMs_) : 0);
}

void Turnos::abortar(Indice conexion) {
    sucesos_.decir({.que = Que::EnlaceCortado, .conexion = conexion});
    tablas_.conexiones[conexion].motivo = enPalabras(Motivo::EscrituraAbandonada);
    companeros_[conexion].zocalo.abortar();
    olvidar(conexion);
}

void Turnos::retener(Indice conexion, std::int64_t ms) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    c.debidas.alRetener(ahora);
    const std::int64_t desde = c.debidas.retenidaDesde();
    if (desde == ahora) sucesos_.decir({.que = Que::LineaRetenida, .conexion = conexion});
    if (ahora - desde > kTiemposRetenida * c.debidas.paciencia()) {
        sucesos_.decir({.que = Que::LineaNoCalla, .conexion = conexion});
        c.motivo = enPalabras(Motivo::LineaQueNoCalla);
        companeros_[conexion].zocalo.abortar();
        return olvidar(conexion);
    }
    c.turno = EstadoDeTurno::EnPausa;
    c.retenida = true;
    companeros_[conexion].Timer_IntervaloEntrePoleo.rearmar(ms);
}

void Turnos::revisarRetencion(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    if (c.turno != EstadoDeTurno::EnPausa || !c.retenida || !c.debidas.limpia()) return;
    c.retenida = false;
    companeros_[conexion].Timer_IntervaloEntrePoleo.rearmar(enMs(pausaMs_));
}

void Turnos::pausar(Indice conexion) { pausar(conexion, bucle_.reloj().monotonicoUs()); }

void Turnos::pausar(Indice conexion, std::int64_t desdeUs) {
    ConexionIP& c = tablas_.conexiones[conexion];
    if (c.turno != EstadoDeTurno::Esperando) return;
    Companeros& timers = companeros_[conexion];
    timers.Timer_TimerPorIPPuerto.habilitar(false);
    timers.enCurso = nullptr;
    c.turno = EstadoDeTurno::EnPausa;
    c.pausaCumplida = pausaMs_ < 1;
    sucesos_.decir({.que = Que::PausaEmpieza, .conexion = conexion, .numero = pausaMs_});
    timers.Timer_IntervaloEntrePoleo.rearmar(enMs(pausaMs_), desdeUs);
}

void Turnos::terminarPausaCumplida(Indice conexion) {
    if (tablas_.conexiones[conexion].pausaCumplida) ticPausa(conexion);
}

void Turnos::ticTiempoFuera(Indice conexion) {
    Transaccion* de = companeros_[conexion].enCurso;
    if (de == nullptr) return;
    try {
        de->vencida(conexion);
    } catch (const std::exception& falla) {
        pausar(conexion);
        anotarFalla(conexion, falla.what());
    }
    terminarPausaCumplida(conexion);
}

void Turnos::ticPausa(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    companeros_[conexion].Timer_IntervaloEntrePoleo.habilitar(false);
    c.pausaCumplida = c.retenida = false;
    if (c.turno != EstadoDeTurno::EnPausa) return;
    sucesos_.decir({.que = Que::PausaTermina, .conexion = conexion});
    c.turno = EstadoDeTurno::Libre;
    try {
        destino_.alQuedarLibre(conexion);
    } catch (const std::exception& falla) {
        anotarFalla(conexion, falla.what());
    }
}

void Turnos::olvidar(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    companeros_[conexion].Timer_TimerPorIPPuerto.habilitar(false);
    companeros_[conexion].Timer_IntervaloEntrePoleo.habilitar(false);
    c.turno = EstadoDeTurno::Libre;
    c.pausaCumplida = c.retenida = false;
    c.debidas.vaciar();
    vaciarRecepcion(conexion);
    if (Transaccion* de = std::exchange(companeros_[conexion].enCurso, nullptr))
        de->perdida(conexion);
}

void Turnos::anotarFalla(Indice conexion, const char* que) {
    const ConexionIP& c = tablas_.conexiones[conexion];
    log_.escribirLog("DRIVER", "Turno de conexion", direccionDe(c), que);
}

/// What is left of an arrival is lost with it: it is counted, and no line of the plant's own.
void Turnos::vaciarRecepcion(Indice conexion) {
    auto& resto = tablas_.conexiones[conexion].recepcion;
    if (resto.empty()) return;
    Suceso perdido{.que = Que::Descarte,
                   .conexion = conexion,
                   .callado = true,
                   .numero = static_cast<double>(resto.size())};
    perdido.poner(resto);
    resto.clear();
    sucesos_.decir(perdido);
}

} // namespace kv
