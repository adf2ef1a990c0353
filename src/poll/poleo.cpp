#include "poll/poleo.h"

#include "poll/cuenta.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kTicInmediato = 1; // interval of a block that is forced to be read now
constexpr std::size_t kHabilitado = 3;    // column of the blocks list
// So many writes in a row, then a due read has its turn: a script that writes after every answer
// must not freeze the values it reads.
constexpr std::uint32_t kEscriturasSeguidas = 4;

std::int64_t enMs(double ms) { return std::llround(ms); }

} // namespace

Poleo::Poleo(Bucle& bucle, Tablas& tablas, Turnos& turnos, Vista& vista, Sello& sello,
             ArregloDeTemporizadores& Timer1_Bloques)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), vista_(vista), sello_(sello),
      Timer1_Bloques_(Timer1_Bloques) {}

void Poleo::activarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    for (const Indice i : tablas_.conexiones[conexion].bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        if (!b.activoPorDefecto && !b.activo) continue;
        tablas_.ponerActivo(i, true);
        tablas_.ponerPendiente(i, true);
        // What rested because its station was silent is asked again: the link is a new one.
        if (!b.habilitadoPorRespuestas) rehabilitar(i);
        b.scanBasesRestantes = b.scanCantidadBases;
        Timer1_Bloques_[i].rearmar(enMs(b.scanBaseMs));
    }
    buscoSiguienteAPolear(conexion);
}

void Poleo::desActivarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    ConexionIP& c = tablas_.conexiones[conexion];
    c.bloqueEnCurso = kNinguno;
    for (const Indice i : c.bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        Timer1_Bloques_[i].habilitar(false);
        b.scanBasesRestantes = b.tiempoFueraBasesRestantes = b.reintentos = 0;
    }
}

bool Poleo::tocaEscribir(const ConexionIP& c, Indice conexion) const {
    if (escrituras_ == nullptr || !c.escrituraPendiente) return false;
    return c.escriturasSeguidas < kEscriturasSeguidas ||
           tablas_.siguientePorPolear(conexion) == ConjuntoDePosiciones::kNinguna;
}

void Poleo::buscoSiguienteAPolear(Indice conexion) {
    if (!turnos_.libre(conexion)) return;
    ConexionIP& c = tablas_.conexiones[conexion];
    if (tocaEscribir(c, conexion) && escrituras_->enviarSiguiente(conexion)) {
        ++c.escriturasSeguidas;
        return;
    }
    c.escribiendo = false;
    const std::size_t posicion = tablas_.siguientePorPolear(conexion);
    if (posicion != ConjuntoDePosiciones::kNinguna) polearBloque(c.bloques[posicion]);
}

bool Poleo::polearBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (!b.tieneTrama || !turnos_.libre(b.idConexion)) return false;
    ConexionIP& c = tablas_.conexiones[b.idConexion];
    c.bloqueEnCurso = bloque;
    c.posicionBloqueEnCurso = b.posicionEnConexion;
    if (turnos_.enviar(b.idConexion, b.tramaSolicitud, registroDe(b.tramaSolicitud),
                       Turnos::plazoDe(b)) != Turnos::Envio::Hecho)
        return false;
    b.scanBasesRestantes = 0;
    b.tiempoFueraBasesRestantes = 0;
    c.cursorBloques = b.posicionEnConexion;
    c.escriturasSeguidas = 0;
    std::string linea = sello_.ahora();
    linea += "  Bloque: ";
    linea += b.clave;
    linea += " Envio -> ";
    linea += b.tramaSolicitudTexto;
    linea += "\r\n";
    vista_.txtTramas.agregar(linea);
    bucle_.dejarCorrerPendientes();
    bucle_.dejarCorrerPendientes();
    return true;
}

void Poleo::alTerminarPausa(Indice conexion) {
    buscoSiguienteAPolear(conexion);
    const auto cuantas = static_cast<Indice>(tablas_.conexiones.limiteSuperior());
    if (cursorConexiones_ != conexion && cursorConexiones_ < cuantas)
        buscoSiguienteAPolear(cursorConexiones_);
    cursorConexiones_ = cursorConexiones_ + 1 < cuantas ? cursorConexiones_ + 1 : 0;
}

void Poleo::Timer1_Bloques_Timer(std::size_t bloque) {
    const auto i = static_cast<Indice>(bloque);
    BloqueLectura& b = tablas_.bloques[i];
    Temporizador& timer = Timer1_Bloques_[bloque];
    if (timer.intervalo() == kTicInmediato && enMs(b.scanBaseMs) != kTicInmediato)
        timer.fijarIntervalo(enMs(b.scanBaseMs));
    if (!b.activo) return timer.habilitar(false);
    if (b.clave.empty()) return;
    vista_.txtTimer[bloque].agregar("Tic Timer Bloque " + sello_.ahora() + " : " + b.clave +
                                    "\r\n");
    if (b.habilitadoPorRespuestas) {
        contarScan(i);
    } else {
        contarReconexion(i);
    }
}

void Poleo::contarScan(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const Cuenta cuenta = contarBase(b.scanCantidadBases, b.scanBasesRestantes, true);
    b.scanBasesRestantes = cuenta.restantes;
    if (cuenta.acortarA > 0) Timer1_Bloques_[bloque].rearmar(enMs(cuenta.acortarA * b.scanBaseMs));
    if (cuenta.vencio) vencer(bloque);
}

void Poleo::vencer(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.ponerPendiente(bloque, true);
    vista_.txtTimer[bloque].agregar(" ----> En Tiempo de poleo " + sello_.ahora() + " : " +
                                    b.clave + "\r\n");
    // On a free connection nothing else waits, except writes, which go first.
    buscoSiguienteAPolear(b.idConexion);
}

void Poleo::contarReconexion(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const Cuenta cuenta = contarBase(b.reconeccionCantidadBases, b.reconeccionBasesRestantes, true);
    b.reconeccionBasesRestantes = cuenta.restantes;
    if (cuenta.acortarA > 0)
        Timer1_Bloques_[bloque].rearmar(enMs(cuenta.acortarA * b.reconeccionBaseMs));
    if (!cuenta.vencio) return;
    rehabilitar(bloque);
    tablas_.ponerPendiente(bloque, true);
    buscoSiguienteAPolear(b.idConexion);
}

void Poleo::rehabilitar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.habilitar(bloque, true);
    b.reconeccionBasesRestantes = 0;
    vista_.txtTimerIpPuerto[b.idConexion].agregar(sello_.ahora() + " HABILITACION de " + b.clave +
                                                  "\r\n");
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Habilitado desde " + sello_.ahora());
}

} // namespace kv
