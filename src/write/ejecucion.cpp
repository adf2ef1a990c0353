#include "write/ejecucion.h"

#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"
#include "write/palabra.h"

#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kReclamoMs = 5000;
// The table is reclaimed only while no write is under way, which a script that writes all the time
// never allows. So from this many finished records on, new writes take their places.
constexpr std::size_t kTerminadasQueSeGuardan = 1000;

/// The register that a value travels as.
std::int16_t comoRegistro(double valor) {
    return static_cast<std::int16_t>(entero(valor).value_or(0));
}

} // namespace

EjecucionDeEscrituras::EjecucionDeEscrituras(Bucle& bucle, Tablas& tablas, Turnos& turnos,
                                             Publicacion& publicacion, EstacionesMudas& mudas,
                                             AvisoDeEscritura& avisos, Vista& vista, Sello& sello)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), mudas_(mudas),
      avisos_(avisos), vista_(vista), sello_(sello),
      TimerEscriturasEnDesuso_(bucle.crearTemporizador([this] { buscarEscriturasRealizadas(); })) {
    TimerEscriturasEnDesuso_->fijarIntervalo(kReclamoMs);
}

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
    c.escrituraPendiente = true;
    ++enEspera_;
    return n;
}

Turnos::Envio EjecucionDeEscrituras::polearBloque_De_Escritura(Indice i) {
    BloqueEscritura& e = tablas_.escrituras[i];
    if (!e.activo() || !turnos_.libre(e.idConexion)) return Turnos::Envio::Imposible;
    const std::int64_t edad = bucle_.reloj().monotonicoMs() - e.leidaMs;
    // A word that could not leave at once is read again: the plant may have changed it.
    if (e.esBit() && e.paso == PasoDeEscritura::PorEnviar && e.lecturas <= e.reintentosMax &&
        static_cast<double>(edad) > turnos_.pausa() + static_cast<double>(e.plazoMs))
        e.paso = PasoDeEscritura::PorLeer;
    const Turnos::Envio envio =
        e.paso == PasoDeEscritura::PorLeer ? leerPalabra(e) : escribirPalabra(e);
    if (envio != Turnos::Envio::Hecho) return envio;
    ConexionIP& c = tablas_.conexiones[e.idConexion];
    c.escribiendo = true;
    c.escrituraEnCurso = i;
    return envio;
}

Turnos::Envio EjecucionDeEscrituras::leerPalabra(BloqueEscritura& e) {
    const Turnos::Envio envio =
        turnos_.enviar(e.idConexion, e.tramaLectura, registroDe(e.tramaLectura), e.plazoMs);
    if (envio != Turnos::Envio::Hecho) return envio;
    ++e.lecturas;
    vista_.txtTramas.agregar(sello_.ahora() + "Escritura de BIT: Lectura Primaria: " +
                             queYDonde(e, " : Valor ") + e.trazaLectura + "\r\n");
    return envio;
}

Turnos::Envio EjecucionDeEscrituras::escribirPalabra(BloqueEscritura& e) {
    const Turnos::Envio envio =
        turnos_.enviar(e.idConexion, e.tramaSolicitud, registroDe(e.tramaSolicitud), e.plazoMs);
    if (envio != Turnos::Envio::Hecho) return envio;
    e.paso = PasoDeEscritura::Enviada;
    const BloqueLectura& leido = tablas_.bloques[e.indiceBloqueLectura];
    e.seConociaAnterior = leido.estado == kOk;
    e.valorAnterior = e.esBit()
                          ? wordbit(static_cast<std::uint16_t>(comoRegistro(leido.valor)), e.bit)
                          : leido.valor;
    vista_.txtTramas.agregar(sello_.ahora() + "Escritura: " + queYDonde(e, " : Valor ") +
                             e.tramaSolicitudTexto + "\r\n");
    avisos_.alSalir(e);
    return envio;
}

bool EjecucionDeEscrituras::enviarSiguiente(Indice conexion) {
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    while (!porHacer.empty()) {
        const Indice i = porHacer.front();
        if (vencida(tablas_.escrituras[i])) {
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

void EjecucionDeEscrituras::interpretarTramaRecepcionada_PorEscritura(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.escrituraEnCurso;
    const std::int16_t valor =
        valorDeRespuesta(std::span<const std::uint8_t, kLargoRespuesta>(c.recepcion));
    const std::string recibido = c.recepcionTexto;
    Turnos::vaciarRecepcion(c);
    if (i >= tablas_.escrituras.limiteSuperior() || !tablas_.escrituras[i].activo())
        return turnos_.pausar(conexion);
    BloqueEscritura& e = tablas_.escrituras[i];
    const Indice leido = e.indiceBloqueLectura;
    if (e.paso == PasoDeEscritura::PorLeer) {
        alLeerPalabra(e, valor);
    } else if (valor == comoRegistro(e.palabra)) {
        terminar(i, FinDeEscritura::Confirmada);
    } else {
        return; // its time-out runs on
    }
    vista_.txtTramas.agregar(sello_.ahora() + "  Recepcion <- " + recibido + "\r\n");
    turnos_.pausar(conexion);
    mudas_.alContestar(leido);
    publicacion_.valorLeido(leido, valor);
}

void EjecucionDeEscrituras::alLeerPalabra(BloqueEscritura& e, std::int16_t valor) {
    e.palabra = SetearBIT_YDevolverPalabra(static_cast<std::uint16_t>(valor), e.bit, e.pedido != 0);
    const std::string& registro = tablas_.bloques[e.indiceBloqueLectura].direccion;
    const double estacion = tablas_.bloques[e.indiceBloqueLectura].indiceEstacion;
    // Of the same register as the read's frame, so it fits.
    if (const auto trama = armarTramaEscritura(registro, textoDeNumero(estacion), e.palabra,
                                               e.tramaSolicitudTexto))
        e.tramaSolicitud = *trama;
    e.paso = PasoDeEscritura::PorEnviar;
    e.leidaMs = bucle_.reloj().monotonicoMs();
    e.reintentos = 0;
    e.enDuda = false;
}

void EjecucionDeEscrituras::respuestaDudosa(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].escrituraEnCurso;
    if (i >= tablas_.escrituras.limiteSuperior()) return turnos_.pausar(conexion);
    BloqueEscritura& e = tablas_.escrituras[i];
    const bool otraVez = e.enDuda;
    e.enDuda = true;
    if (e.paso == PasoDeEscritura::PorLeer) {
        if (otraVez && e.reintentos >= e.reintentosMax)
            return abandonar(i, FinDeEscritura::PalabraDesconocida);
        if (otraVez) e.reintentos += 1;
        return turnos_.pausar(conexion);
    }
    // A station that goes on talking must not hold the line for ever.
    if (!otraVez)
        turnos_.moverTiempoFuera(conexion, tablas_.conexiones[conexion].debidas.silencioMs());
}

void EjecucionDeEscrituras::ticDeEscritura(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].escrituraEnCurso;
    if (i >= tablas_.escrituras.limiteSuperior() || !tablas_.escrituras[i].activo())
        return turnos_.pausar(conexion);
    BloqueEscritura& e = tablas_.escrituras[i];
    vista_.txtTimerIpPuerto[conexion].agregar(sello_.ahora() +
                                              " Tic Timer Time Out ESCRITURA \r\n");
    if (e.paso == PasoDeEscritura::PorLeer) {
        if (e.reintentos >= e.reintentosMax)
            return abandonar(i, FinDeEscritura::PalabraDesconocida);
        e.reintentos += 1;
        return repetir(i, " REINTENTO LECTURA PRIMARIA ", e.tramaLectura, e.trazaLectura);
    }
    const bool releer = !e.esperandoConfirmacion && e.enDuda;
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
    const BloqueEscritura& e = tablas_.escrituras[i];
    if (!turnos_.conectada(e.idConexion)) return;
    std::string linea = sello_.ahora();
    linea += rotulo;
    agregarNumero(linea, e.reintentos);
    linea += " Bloque: " + queYDonde(e, ": Valor ") + traza + "\r\n";
    vista_.txtTramas.agregar(linea);
    turnos_.reenviar(e.idConexion, trama, e.plazoMs);
    bucle_.dejarCorrerPendientes();
}

std::string EjecucionDeEscrituras::queYDonde(const BloqueEscritura& e,
                                             std::string_view separador) const {
    const double valor = e.paso == PasoDeEscritura::PorLeer ? e.pedido : e.palabra;
    return e.clave + "[Dir " + tablas_.bloques[e.indiceBloqueLectura].direccion +
           std::string(separador) + textoDeNumero(valor) + "] Envio -> ";
}

void EjecucionDeEscrituras::abandonar(Indice i, FinDeEscritura fin) {
    const BloqueEscritura& e = tablas_.escrituras[i];
    const Indice conexion = e.idConexion;
    const bool enCurso = tablas_.conexiones[conexion].escrituraEnCurso == i &&
                         tablas_.conexiones[conexion].escribiendo;
    std::string linea = sello_.ahora() + " Deshabilitacion de ESCRITURA: " + e.clave + " [" +
                        tablas_.bloques[e.indiceBloqueLectura].direccion +
                        " Valor: " + textoDeNumero(e.esBit() ? e.pedido : e.palabra) + "]";
    if (fin == FinDeEscritura::ConexionPerdida) linea += " Sin conexion";
    if (fin == FinDeEscritura::PalabraDesconocida) linea += " No se conoce la palabra del bit";
    if (fin == FinDeEscritura::Vencida) linea += " Espero demasiado";
    linea += "\r\n";
    terminar(i, fin);
    if (enCurso && turnos_.conectada(conexion) && !turnos_.llegoTodo(conexion)) {
        // Its bytes are still on this side: they must not leave when the cable is back.
        turnos_.abortar(conexion);
    } else if (fin == FinDeEscritura::SinRespuesta || fin == FinDeEscritura::PalabraDesconocida) {
        turnos_.pausar(conexion);
    }
    vista_.txtTimerIpPuerto[conexion].agregar(linea);
    vista_.txtTramas.agregar(linea);
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
    c.escrituraPendiente = !c.escrituras.empty();
    --enEspera_;
    terminadas_.push_back(i);
    avisos_.alTerminar(e, fin);
}

void EjecucionDeEscrituras::alPerderConexion(Indice conexion) {
    const auto& porHacer = tablas_.conexiones[conexion].escrituras;
    while (!porHacer.empty())
        abandonar(porHacer.front(), FinDeEscritura::ConexionPerdida);
}

void EjecucionDeEscrituras::alTerminarElPrograma() {
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        const auto& porHacer = tablas_.conexiones[n].escrituras;
        while (!porHacer.empty())
            abandonar(porHacer.front(), FinDeEscritura::ProgramaTerminado);
    }
}

bool EjecucionDeEscrituras::vencida(const BloqueEscritura& e) const {
    return vigenciaMs_ > 0 && e.paso != PasoDeEscritura::Enviada &&
           bucle_.reloj().monotonicoMs() - e.pedidaMs > vigenciaMs_;
}

void EjecucionDeEscrituras::vencerViejas() {
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        const ConexionIP& c = tablas_.conexiones[n];
        // Oldest first, and behind the one that is under way, which ends by its time-outs.
        while (!c.escrituras.empty()) {
            const Indice cual = c.escrituras.front();
            const bool enCurso = cual == c.escrituraEnCurso && c.escribiendo;
            if (enCurso || !vencida(tablas_.escrituras[cual])) break;
            abandonar(cual, FinDeEscritura::Vencida);
        }
    }
}

void EjecucionDeEscrituras::buscarEscriturasRealizadas() {
    if (enEspera_ > 0) vencerViejas();
    if (enEspera_ > 0) return;
    for (std::size_t n = 0; n < tablas_.conexiones.limiteSuperior(); ++n) {
        ConexionIP& c = tablas_.conexiones[n];
        c.escrituraPendiente = false;
        c.escrituraEnCurso = kNinguno;
    }
    tablas_.escrituras.vaciar();
    terminadas_.clear();
    TimerEscriturasEnDesuso_->habilitar(false);
}

} // namespace kv
