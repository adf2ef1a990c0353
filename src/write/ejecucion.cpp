#include "write/ejecucion.h"

#include "link/Modulo_Tramas_KV2200.h"
#include "poll/cuenta.h"
#include "text/numeros.h"
#include "write/palabra.h"

#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kReclamoMs = 5000;
constexpr std::int64_t kTicInmediato = 1;
// The table is reclaimed only while no write is under way, which a script that writes all the time
// never allows. So from this many finished records on, new writes take their places.
constexpr std::size_t kTerminadasQueSeGuardan = 1000;

/// The register that a value travels as.
std::int16_t comoRegistro(double valor) {
    return static_cast<std::int16_t>(entero(valor).value_or(0));
}

std::string queYDonde(const BloqueEscritura& e, std::string_view separador) {
    return e.clave + "[Dir " + e.direccion + std::string(separador) + textoDeNumero(e.valores[0]) +
           "] Envio -> ";
}

} // namespace

EjecucionDeEscrituras::EjecucionDeEscrituras(Bucle& bucle, Tablas& tablas, Turnos& turnos,
                                             Publicacion& publicacion, Vista& vista, Sello& sello)
    : Timer_Escrituras(bucle), bucle_(bucle), tablas_(tablas), turnos_(turnos),
      publicacion_(publicacion), vista_(vista), sello_(sello),
      TimerEscriturasEnDesuso_(bucle.crearTemporizador([this] { buscarEscriturasRealizadas(); })) {
    TimerEscriturasEnDesuso_->fijarIntervalo(kReclamoMs);
    Timer_Escrituras.alTic([this](std::size_t i) { Timer_Escrituras_Timer(i); });
    Timer_Escrituras.agregar();
}

void EjecucionDeEscrituras::fijarReclamo(double ms) {
    if (TimerEscriturasEnDesuso_->intervalo() != std::llround(ms))
        TimerEscriturasEnDesuso_->fijarIntervalo(std::llround(ms));
}

Indice EjecucionDeEscrituras::tomarLugar(BloqueEscritura nueva) {
    ConexionIP& c = tablas_.conexiones[nueva.idConexion];
    nueva.activo = true;
    nueva.posicionEnConexion = static_cast<Indice>(c.escrituras.size());
    Indice n = kNinguno;
    if (terminadas_.size() > kTerminadasQueSeGuardan) {
        n = terminadas_.front();
        terminadas_.pop_front();
        nueva.indice = n;
        tablas_.escrituras[n] = std::move(nueva);
        vista_.txtTimerEscritura[n].vaciar();
    } else {
        n = static_cast<Indice>(tablas_.escrituras.limiteSuperior());
        nueva.indice = n;
        tablas_.escrituras.agregar(std::move(nueva));
        Timer_Escrituras.agregar();
    }
    vista_.txtTimerEscritura.usar(n, textoDeNumero(n));
    Timer_Escrituras[n].habilitar(false);
    Timer_Escrituras[n].fijarIntervalo(kTicInmediato);
    c.escrituras.push_back(n);
    c.escrituraPendiente = true;
    ++enEspera_;
    return n;
}

/// The word of a bit request, from the register's present value. False when it is not known.
bool EjecucionDeEscrituras::ponerPalabra(BloqueEscritura& e) const {
    if (!e.esBit || e.enviada) return true;
    const BloqueLectura& leido = tablas_.bloques[e.indiceBloqueLectura];
    if (leido.estados[0] != 6) return false;
    const auto actual = static_cast<std::uint16_t>(comoRegistro(leido.valores[0]));
    e.valores[0] = SetearBIT_YDevolverPalabra(actual, static_cast<int>(e.bit), e.valorBit != 0);
    const auto trama = armarTramaEscritura(e.direccion, textoDeNumero(e.indiceEstacion),
                                           e.valores[0], e.tramaSolicitudTexto);
    if (trama) e.tramaSolicitud = *trama;
    return trama.has_value();
}

Turnos::Envio EjecucionDeEscrituras::polearBloque_De_Escritura(Indice i) {
    BloqueEscritura& e = tablas_.escrituras[i];
    if (!e.activo || !turnos_.libre(e.idConexion)) return Turnos::Envio::Imposible;
    if (!ponerPalabra(e)) {
        abandonar(i, FinDeEscritura::PalabraDesconocida);
        return Turnos::Envio::Imposible;
    }
    const Turnos::Envio envio = turnos_.enviar(e.idConexion, e.tramaSolicitud,
                                               registroDe(e.tramaSolicitud), Turnos::plazoDe(e));
    if (envio != Turnos::Envio::Hecho) return envio;
    ConexionIP& c = tablas_.conexiones[e.idConexion];
    c.escribiendo = true;
    c.posicionEscrituraEnCurso = e.posicionEnConexion;
    c.escrituraEnCurso = i;
    e.enviada = true;
    e.scanBasesRestantes = 0;
    e.tiempoFueraBasesRestantes = 0;
    Timer_Escrituras[i].habilitar(false);
    vista_.txtTramas.agregar(sello_.ahora() +
                             (e.esBit ? "Escritura de BIT: Lectura Primaria: " : "Escritura: ") +
                             queYDonde(e, " : Valor ") + e.tramaSolicitudTexto + "\r\n");
    return envio;
}

bool EjecucionDeEscrituras::enviarSiguiente(Indice conexion) {
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    while (!porHacer.empty()) {
        const Indice i = porHacer.front();
        if (polearBloque_De_Escritura(i) != Turnos::Envio::Imposible) return true;
        if (tablas_.escrituras[i].activo) return false;
    }
    return false;
}

void EjecucionDeEscrituras::interpretarTramaRecepcionada_PorEscritura(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.escrituraEnCurso;
    if (!c.escribiendo || i >= tablas_.escrituras.limiteSuperior() ||
        !tablas_.escrituras[i].activo) {
        Turnos::vaciarRecepcion(c);
        return turnos_.pausar(conexion);
    }
    BloqueEscritura& e = tablas_.escrituras[i];
    const std::int16_t valor =
        valorDeRespuesta(std::span<const std::uint8_t, kLargoRespuesta>(c.recepcion));
    const std::string recibido = c.recepcionTexto;
    Turnos::vaciarRecepcion(c);
    if (valor != comoRegistro(e.valores[0])) return; // its time-out runs on
    const Indice leido = e.indiceBloqueLectura;
    e.scanBasesRestantes = e.tiempoFueraBasesRestantes = e.reintentos = 0;
    vista_.txtTramas.agregar(sello_.ahora() + "  Recepcion <- " + recibido + "\r\n");
    terminar(i, FinDeEscritura::Confirmada);
    turnos_.pausar(conexion);
    publicacion_.valorLeido(leido, valor);
}

void EjecucionDeEscrituras::respuestaDudosa(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].escrituraEnCurso;
    if (i >= tablas_.escrituras.limiteSuperior()) return turnos_.pausar(conexion);
    BloqueEscritura& e = tablas_.escrituras[i];
    if (e.respuestaDudosa) return; // a station that goes on talking must not hold the line for ever
    e.respuestaDudosa = true;
    // It is read back when the line has been quiet for so long that the answer can only be its own.
    e.tiempoFueraBasesRestantes = e.tiempoFueraCantidadBases;
    turnos_.acortarTiempoFuera(
        conexion, static_cast<double>(tablas_.conexiones[conexion].debidas.silencioMs()));
}

void EjecucionDeEscrituras::ticDeEscritura(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].escrituraEnCurso;
    if (i >= tablas_.escrituras.limiteSuperior() || !tablas_.escrituras[i].activo)
        return turnos_.pausar(conexion);
    BloqueEscritura& e = tablas_.escrituras[i];
    vista_.txtTimerIpPuerto[conexion].agregar(sello_.ahora() +
                                              " Tic Timer Time Out ESCRITURA \r\n");
    const Cuenta cuenta =
        contarBase(e.tiempoFueraCantidadBases, e.tiempoFueraBasesRestantes, false);
    e.tiempoFueraBasesRestantes = cuenta.restantes;
    if (cuenta.acortarA > 0)
        turnos_.acortarTiempoFuera(conexion, cuenta.acortarA * e.tiempoFueraBaseMs);
    if (!cuenta.vencio) return;
    const bool releer = !e.esperandoConfirmacion && e.respuestaDudosa;
    if (e.reintentos >= e.reintentosMax && !releer)
        return abandonar(i, FinDeEscritura::SinRespuesta);
    if (!e.esperandoConfirmacion) {
        e.esperandoConfirmacion = true;
        polear_ConfirmacionEscritura(i);
    } else {
        e.reintentos += 1;
        reintentarBloque_eSCRITURA(i);
    }
}

void EjecucionDeEscrituras::polear_ConfirmacionEscritura(Indice i) {
    const BloqueEscritura& e = tablas_.escrituras[i];
    repetir(i, " PEDIDO DE CONFIRMACION ", e.tramaLectura, e.trazaLectura);
}

void EjecucionDeEscrituras::reintentarBloque_eSCRITURA(Indice i) {
    BloqueEscritura& e = tablas_.escrituras[i];
    e.esperandoConfirmacion = false;
    repetir(i, " REINTENTO ESCRITURA", e.tramaSolicitud, e.tramaSolicitudTexto);
}

void EjecucionDeEscrituras::repetir(Indice i, std::string_view rotulo, const Solicitud& trama,
                                    const std::string& traza) {
    BloqueEscritura& e = tablas_.escrituras[i];
    if (!turnos_.conectada(e.idConexion)) return;
    e.tiempoFueraBasesRestantes = 0;
    std::string linea = sello_.ahora();
    linea += rotulo;
    agregarNumero(linea, e.reintentos);
    linea += " Bloque: " + queYDonde(e, ": Valor ") + traza + "\r\n";
    vista_.txtTramas.agregar(linea);
    turnos_.reenviar(e.idConexion, trama, Turnos::plazoDe(e));
    bucle_.dejarCorrerPendientes();
}

void EjecucionDeEscrituras::abandonar(Indice i, FinDeEscritura fin) {
    BloqueEscritura& e = tablas_.escrituras[i];
    const Indice conexion = e.idConexion;
    std::string linea = sello_.ahora() + " Deshabilitacion de ESCRITURA: " + e.clave + " [" +
                        e.direccion + " Valor: " + textoDeNumero(e.valores[0]) + "]";
    if (fin == FinDeEscritura::ConexionPerdida) linea += " Sin conexion";
    if (fin == FinDeEscritura::PalabraDesconocida) linea += " No se conoce la palabra del bit";
    linea += "\r\n";
    e.reintentos = e.reconeccionBasesRestantes = e.tiempoFueraBasesRestantes = 0;
    terminar(i, fin);
    if (fin == FinDeEscritura::SinRespuesta) turnos_.pausar(conexion);
    vista_.txtTimerIpPuerto[conexion].agregar(linea);
    vista_.txtTramas.agregar(linea);
}

void EjecucionDeEscrituras::terminar(Indice i, FinDeEscritura fin) {
    BloqueEscritura& e = tablas_.escrituras[i];
    ConexionIP& c = tablas_.conexiones[e.idConexion];
    if (c.escrituraEnCurso == i) c.escrituraEnCurso = kNinguno;
    e.activo = e.pendiente = e.esperandoConfirmacion = false;
    Timer_Escrituras[i].habilitar(false);
    if (!c.escrituras.empty() && c.escrituras.front() == i) {
        c.escrituras.pop_front();
    } else {
        c.escrituras.remove(i);
    }
    c.escrituraPendiente = !c.escrituras.empty();
    --enEspera_;
    terminadas_.push_back(i);
    if (destino_ != nullptr) destino_->alTerminar(e, fin);
}

void EjecucionDeEscrituras::alPerderConexion(Indice conexion) {
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    while (!porHacer.empty())
        abandonar(porHacer.front(), FinDeEscritura::ConexionPerdida);
}

void EjecucionDeEscrituras::Timer_Escrituras_Timer(std::size_t i) {
    if (i >= tablas_.escrituras.limiteSuperior()) return Timer_Escrituras[i].habilitar(false);
    BloqueEscritura& e = tablas_.escrituras[i];
    Temporizador& timer = Timer_Escrituras[i];
    if (!e.activo || e.clave.empty()) return timer.habilitar(false);
    const auto scan = std::llround(e.scanBaseMs);
    if (timer.intervalo() == kTicInmediato && scan != kTicInmediato) timer.fijarIntervalo(scan);
    CajaDeTexto& caja = vista_.txtTimerEscritura[i];
    caja.agregar("Tic Timer Bloque " + sello_.ahora() + " : " + e.clave + "\r\n");
    const Cuenta cuenta = contarBase(e.scanCantidadBases, e.scanBasesRestantes, true);
    e.scanBasesRestantes = cuenta.restantes;
    if (cuenta.acortarA > 0) timer.rearmar(std::llround(cuenta.acortarA * e.scanBaseMs));
    if (!cuenta.vencio) return;
    timer.rearmar(scan);
    e.pendiente = true;
    caja.agregar(" ----> En Tiempo de poleo " + sello_.ahora() + " : " + e.clave + "\r\n");
    // Its turn comes in the order of creation, whichever timer ticks first.
    if (turnos_.libre(e.idConexion)) enviarSiguiente(e.idConexion);
}

void EjecucionDeEscrituras::buscarEscriturasRealizadas() {
    if (enEspera_ > 0) return;
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        ConexionIP& c = tablas_.conexiones[n];
        c.escrituraPendiente = false;
        c.escrituraEnCurso = kNinguno;
    }
    tablas_.escrituras.vaciar();
    terminadas_.clear();
    Timer_Escrituras.acortarA(1);
    vista_.txtTimerEscritura.vaciar();
    TimerEscriturasEnDesuso_->habilitar(false);
}

} // namespace kv
