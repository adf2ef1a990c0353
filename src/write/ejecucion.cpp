// SPDX-License-Identifier: Apache-2.0
#include "write/ejecucion.h"

#include "plant/ordenantes.h"
#include "plant/valor_y_estado.h"
#include "poll/lectura_en_turno.h"
#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"
#include "write/palabra.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kv {
namespace {

// The table is reclaimed only while no write is under way, which a script that writes all the time
// never allows. So from this many finished records on, new writes take their places.
constexpr std::size_t kTerminadasQueSeGuardan = 1000;

/// The register that a value travels as.
std::int16_t comoRegistro(double valor) {
    return static_cast<std::int16_t>(entero(valor).value_or(0));
}

Que siguienteIntento(const BloqueEscritura& e) {
    if (e.paso == PasoDeEscritura::PorLeer) return Que::EscrituraLeeOtraVez;
    return e.esperandoConfirmacion ? Que::EscrituraRelee : Que::EscrituraRepite;
}

} // namespace

EjecucionDeEscrituras::EjecucionDeEscrituras(Bucle& bucle, Tablas& tablas, Turnos& turnos,
                                             Publicacion& publicacion, EstacionesMudas& mudas,
                                             Sucesos& sucesos)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), mudas_(mudas),
      sucesos_(sucesos),
      TimerEscriturasEnDesuso_(bucle.crearTemporizador([this] { buscarEscriturasRealizadas(); })) {}

void EjecucionDeEscrituras::fijarReclamo(double ms) {
    if (TimerEscriturasEnDesuso_->intervalo() != std::llround(ms))
        TimerEscriturasEnDesuso_->fijarIntervalo(std::llround(ms));
}

Indice EjecucionDeEscrituras::tomarLugar(BloqueEscritura nueva) {
    ConexionIP& c = tablas_.conexiones[nueva.idConexion];
    nueva.paso = nueva.esBit() ? PasoDeEscritura::PorLeer : PasoDeEscritura::PorEnviar;
    nueva.pedidaMs = bucle_.reloj().monotonicoMs();
    Indice n = static_cast<Indice>(tablas_.escrituras.limiteSuperior());
    if (terminadas_.size() > kTerminadasQueSeGuardan) {
        n = terminadas_.front();
        terminadas_.pop_front();
        nueva.indice = n;
        tablas_.escrituras[n] = std::move(nueva);
    } else {
        nueva.indice = n;
        tablas_.escrituras.agregar(std::move(nueva));
    }
    c.escrituras.push_back(n);
    ++enEspera_;
    return n;
}

Turnos::Envio EjecucionDeEscrituras::polearBloque_De_Escritura(Indice i) {
    BloqueEscritura& e = tablas_.escrituras[i];
    if (!e.activo() || !turnos_.libre(e.idConexion)) return Turnos::Envio::Imposible;
    const std::int64_t edad = bucle_.reloj().monotonicoMs() - e.leidaMs;
    const BloqueLectura& leido = leidoDe(e);
    // A word that could not leave at once is read again: the plant may have changed it.
    if (e.esBit() && e.paso == PasoDeEscritura::PorEnviar && e.lecturas <= leido.reintentosMax &&
        static_cast<double>(edad) > turnos_.pausa() + static_cast<double>(leido.tiempoFueraMs))
        e.paso = PasoDeEscritura::PorLeer;
    const Turnos::Envio envio = e.cedio                              ? retomar(e)
                                : e.paso == PasoDeEscritura::PorLeer ? leerPalabra(e)
                                                                     : escribirPalabra(e);
    if (envio != Turnos::Envio::Hecho) return envio;
    ConexionIP& c = tablas_.conexiones[e.idConexion];
    c.escrituraEnCurso = i;
    c.escribeDesdeMs = bucle_.reloj().monotonicoMs();
    return envio;
}

Turnos::Envio EjecucionDeEscrituras::leerPalabra(BloqueEscritura& e) {
    const BloqueLectura& leido = leidoDe(e);
    const Turnos::Envio envio =
        turnos_.enviar(e.idConexion, *this, leido.tramaSolicitud, leido.tiempoFueraMs);
    if (envio != Turnos::Envio::Hecho) return envio;
    ++e.lecturas;
    decir(Que::EscrituraLee, e);
    return envio;
}

Turnos::Envio EjecucionDeEscrituras::escribirPalabra(BloqueEscritura& e) {
    const BloqueLectura& leido = leidoDe(e);
    const Turnos::Envio envio =
        turnos_.enviar(e.idConexion, *this, e.tramaSolicitud, leido.tiempoFueraMs);
    if (envio != Turnos::Envio::Hecho) return envio;
    e.paso = PasoDeEscritura::Enviada;
    e.seConociaAnterior = leido.estado == kOk;
    e.valorAnterior = e.esBit()
                          ? wordbit(static_cast<std::uint16_t>(comoRegistro(leido.valor)), e.bit)
                          : leido.valor;
    decir(Que::EscrituraSale, e);
    return envio;
}

bool EjecucionDeEscrituras::enviarSiguiente(Indice conexion) {
    if (!turnos_.libre(conexion)) return false; // the one that is out ends by its time-outs
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    while (!porHacer.empty()) {
        const Indice i = porHacer.front();
        if (esVieja(tablas_.escrituras[i])) {
            abandonar(i, FinDeEscritura::Vencida);
            continue;
        }
        return polearBloque_De_Escritura(i) != Turnos::Envio::Imposible;
    }
    return false;
}

bool EjecucionDeEscrituras::aMedias(Indice conexion) const {
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    if (porHacer.empty()) return false;
    const BloqueEscritura& e = tablas_.escrituras[porHacer.front()];
    return e.esBit() && e.paso == PasoDeEscritura::PorEnviar;
}

void EjecucionDeEscrituras::decir(Que que, const BloqueEscritura& e) {
    Suceso s{.que = que,
             .detalle = static_cast<std::int16_t>(e.reintentos),
             .conexion = e.idConexion,
             .bloque = e.indiceBloqueLectura,
             .escritura = e.indice,
             .bit = static_cast<std::int8_t>(e.bit),
             .numero = e.paso == PasoDeEscritura::PorLeer ? e.pedido : e.palabra};
    s.poner(tramaDe(e, que));
    sucesos_.decir(s);
}

const Solicitud& EjecucionDeEscrituras::tramaDe(const BloqueEscritura& e, Que que) const {
    return contiene(kLecturasDeEscrituras, que) ? leidoDe(e).tramaSolicitud : e.tramaSolicitud;
}

/// The connection's write that is out; null when it has ended meanwhile.
BloqueEscritura* EjecucionDeEscrituras::enCurso(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].escrituraEnCurso;
    if (i >= tablas_.escrituras.limiteSuperior() || !tablas_.escrituras[i].activo()) return nullptr;
    return &tablas_.escrituras[i];
}

void EjecucionDeEscrituras::contestada(Indice conexion, const Respuesta& respuesta) {
    BloqueEscritura* e = enCurso(conexion);
    if (e == nullptr) return turnos_.pausar(conexion);
    const std::int16_t valor = valorDeRespuesta(respuesta);
    const Indice leido = e->indiceBloqueLectura;
    Suceso recibida{.que = Que::Recepcion,
                    .conexion = conexion,
                    .bloque = leido,
                    .escritura = e->indice,
                    .numero = static_cast<double>(valor)};
    recibida.poner(respuesta);
    if (e->paso == PasoDeEscritura::PorLeer) {
        alLeerPalabra(*e, valor);
    } else if (confirma(*e, valor)) {
        terminar(e->indice, FinDeEscritura::Confirmada);
    } else {
        // Its time-out runs on.
        e->otroValor = true;
        recibida.que = Que::Sobrante;
        recibida.callado = true;
        recibida.numero = 1;
        return sucesos_.decir(recibida);
    }
    sucesos_.decir(recibida);
    turnos_.pausar(conexion);
    mudas_.alContestar(leido);
    publicacion_.valorLeido(leido, valor);
}

void EjecucionDeEscrituras::alLeerPalabra(BloqueEscritura& e, std::int16_t valor) {
    combinar(e, valor);
    e.paso = PasoDeEscritura::PorEnviar;
    e.reintentos = 0;
    e.enDuda = false;
}

void EjecucionDeEscrituras::combinar(BloqueEscritura& e, std::int16_t valor) {
    e.palabra = SetearBIT_YDevolverPalabra(static_cast<std::uint16_t>(valor), e.bit, e.pedido != 0);
    const std::string_view registro = leidoDe(e).direccion();
    const double estacion = tablas_.estacionDe(leidoDe(e)).indice;
    // Of the same register as the read's frame, so it fits.
    if (const auto trama = armarTramaEscritura(registro, textoDeNumero(estacion), e.palabra))
        e.tramaSolicitud = *trama;
    e.leidaMs = bucle_.reloj().monotonicoMs();
}

/// A bit is as it was asked for when the word that is read back has it, whatever the plant has made
/// of the others since; where it has not, the repetition is of that word, and undoes nothing.
bool EjecucionDeEscrituras::confirma(BloqueEscritura& e, std::int16_t valor) {
    if (e.esBit() && e.esperandoConfirmacion) combinar(e, valor);
    return valor == comoRegistro(e.palabra);
}

void EjecucionDeEscrituras::dudosa(Indice conexion) {
    BloqueEscritura* e = enCurso(conexion);
    if (e == nullptr) return turnos_.pausar(conexion);
    const bool otraVez = std::exchange(e->enDuda, true);
    if (e->paso == PasoDeEscritura::PorLeer) {
        if (otraVez && e->reintentos >= leidoDe(*e).reintentosMax)
            return abandonar(e->indice, FinDeEscritura::PalabraDesconocida);
        if (otraVez) e->reintentos += 1;
        return turnos_.pausar(conexion);
    }
    // A station that goes on talking must not hold the line for ever.
    if (!otraVez)
        turnos_.moverTiempoFuera(conexion, tablas_.conexiones[conexion].debidas.silencioMs());
}

void EjecucionDeEscrituras::vencida(Indice conexion) {
    BloqueEscritura* e = enCurso(conexion);
    if (e == nullptr) return turnos_.pausar(conexion);
    ConexionIP& c = tablas_.conexiones[conexion];
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    const std::int64_t esperoMs = ahora - c.enviadoUs / 1000;
    sucesos_.decir({.que = Que::TiempoFueraDeEscritura,
                    .conexion = conexion,
                    .bloque = e->indiceBloqueLectura,
                    .escritura = e->indice,
                    .numero = static_cast<double>(esperoMs)});
    // A try that came while no read was due takes nothing from what was left to them.
    c.leeHastaMs = std::max(c.leeHastaMs, ahora + (ahora - c.escribeDesdeMs));
    const bool quedan = e->reintentos < leidoDe(*e).reintentosMax;
    const bool hayEnlace = turnos_.conectada(conexion);
    if (e->paso == PasoDeEscritura::PorLeer) {
        if (!quedan)
            return abandonar(e->indice, hayEnlace ? FinDeEscritura::PalabraDesconocida
                                                  : FinDeEscritura::ConexionPerdida);
        e->reintentos += 1;
        return otroIntento(*e);
    }
    if (!quedan && (e->esperandoConfirmacion || !e->enDuda))
        return abandonar(e->indice, !hayEnlace     ? FinDeEscritura::ConexionPerdida
                                    : e->otroValor ? FinDeEscritura::OtroValor
                                                   : FinDeEscritura::SinRespuesta);
    // What a bit was merged into grows old: while nobody answers its word is not sent again.
    const bool repite = e->esperandoConfirmacion && (!e->esBit() || e->otroValor);
    if (e->esperandoConfirmacion) e->reintentos += 1;
    e->esperandoConfirmacion = !repite;
    otroIntento(*e);
}

void EjecucionDeEscrituras::perdida(Indice conexion) {
    if (const BloqueEscritura* e = enCurso(conexion))
        abandonar(e->indice, FinDeEscritura::ConexionPerdida);
}

void EjecucionDeEscrituras::otroIntento(BloqueEscritura& e) {
    if (!turnos_.conectada(e.idConexion)) return;
    if (lecturaEnTurno(tablas_, turnos_, e.idConexion).cuenta) {
        e.cedio = true;
        return turnos_.pausar(e.idConexion);
    }
    const Que que = siguienteIntento(e);
    e.otroValor = false;
    decir(que, e);
    turnos_.reenviar(e.idConexion, tramaDe(e, que), leidoDe(e).tiempoFueraMs);
    bucle_.dejarCorrerPendientes();
}

Turnos::Envio EjecucionDeEscrituras::retomar(BloqueEscritura& e) {
    const Que que = siguienteIntento(e);
    const auto registro = registroDe(e.paso == PasoDeEscritura::PorLeer ? leidoDe(e).tramaSolicitud
                                                                        : e.tramaSolicitud);
    const Turnos::Envio envio =
        turnos_.enviar(e.idConexion, *this, tramaDe(e, que), leidoDe(e).tiempoFueraMs, registro);
    if (envio != Turnos::Envio::Hecho) return envio;
    e.cedio = e.otroValor = false;
    decir(que, e);
    return envio;
}

void EjecucionDeEscrituras::abandonar(Indice i, FinDeEscritura fin) {
    const BloqueEscritura& e = tablas_.escrituras[i];
    const Indice conexion = e.idConexion;
    const bool fuera = estaFuera(e);
    const Suceso abandonada{.que = Que::EscrituraAbandonada,
                            .detalle = static_cast<std::int16_t>(fin),
                            .conexion = conexion,
                            .bloque = e.indiceBloqueLectura,
                            .escritura = i,
                            .bit = static_cast<std::int8_t>(e.bit),
                            .numero = e.esBit() ? e.pedido : e.palabra};
    terminar(i, fin);
    if (fuera && turnos_.conectada(conexion) && !turnos_.llegoTodo(conexion)) {
        // Its bytes are still on this side: they must not leave when the cable is back.
        turnos_.abortar(conexion);
    } else if (fin == FinDeEscritura::SinRespuesta || fin == FinDeEscritura::OtroValor ||
               fin == FinDeEscritura::PalabraDesconocida) {
        turnos_.pausar(conexion);
    }
    sucesos_.decir(abandonada);
}

bool EjecucionDeEscrituras::estaFuera(const BloqueEscritura& e) const {
    return turnos_.enCurso(e.idConexion) == this &&
           tablas_.conexiones[e.idConexion].escrituraEnCurso == e.indice;
}

void EjecucionDeEscrituras::terminar(Indice i, FinDeEscritura fin) {
    BloqueEscritura& e = tablas_.escrituras[i];
    ConexionIP& c = tablas_.conexiones[e.idConexion];
    if (c.escrituraEnCurso == i) c.escrituraEnCurso = kNinguno;
    e.paso = PasoDeEscritura::Terminada;
    if (!c.escrituras.empty() && c.escrituras.front() == i) {
        c.escrituras.pop_front();
    } else {
        c.escrituras.remove(i);
    }
    --enEspera_;
    terminadas_.push_back(i);
    sucesos_.decir({.que = Que::EscrituraTerminada,
                    .detalle = static_cast<std::int16_t>(fin),
                    .conexion = e.idConexion,
                    .bloque = e.indiceBloqueLectura,
                    .escritura = i,
                    .bit = static_cast<std::int8_t>(e.bit),
                    .callado = esDelGuion(e.origen),
                    .numero = e.pedido});
}

void EjecucionDeEscrituras::alPerderConexion(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    c.leeHastaMs = 0;
    while (!c.escrituras.empty())
        abandonar(c.escrituras.front(), FinDeEscritura::ConexionPerdida);
}

void EjecucionDeEscrituras::alRetirar(Indice bloque) {
    const auto deEste = [&](Indice i) {
        const BloqueEscritura& e = tablas_.escrituras[i];
        return e.indiceBloqueLectura == bloque && !estaFuera(e) &&
               e.paso != PasoDeEscritura::Enviada;
    };
    auto& porHacer = tablas_.conexiones[tablas_.bloques[bloque].idConexion].escrituras;
    for (auto i = porHacer.begin(); i != porHacer.end();) {
        const auto este = i++; // the list forgets it, and looks for it from its beginning
        if (!deEste(*este)) continue;
        porHacer.splice(porHacer.begin(), porHacer, este);
        abandonar(*este, FinDeEscritura::Retirada);
    }
}

void EjecucionDeEscrituras::alTerminarElPrograma() {
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        const auto& porHacer = tablas_.conexiones[n].escrituras;
        while (!porHacer.empty())
            abandonar(porHacer.front(), FinDeEscritura::ProgramaTerminado);
    }
}

bool EjecucionDeEscrituras::esVieja(const BloqueEscritura& e) const {
    return vigenciaMs_ > 0 && e.paso != PasoDeEscritura::Enviada &&
           bucle_.reloj().monotonicoMs() - e.pedidaMs > vigenciaMs_;
}

void EjecucionDeEscrituras::vencerViejas() {
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        const ConexionIP& c = tablas_.conexiones[n];
        // Oldest first, and behind the one that is under way, which ends by its time-outs.
        while (!c.escrituras.empty()) {
            const Indice cual = c.escrituras.front();
            if (estaFuera(tablas_.escrituras[cual]) || !esVieja(tablas_.escrituras[cual])) break;
            abandonar(cual, FinDeEscritura::Vencida);
        }
    }
}

void EjecucionDeEscrituras::buscarEscriturasRealizadas() {
    if (enEspera_ > 0) vencerViejas();
    if (enEspera_ > 0) return;
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        tablas_.conexiones[n].escrituraEnCurso = kNinguno;
    }
    tablas_.escrituras.vaciar();
    terminadas_.clear();
    TimerEscriturasEnDesuso_->habilitar(false);
}

} // namespace kv
