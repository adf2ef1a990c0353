#include "poll/poleo.h"

#include <utility>

namespace kv {
namespace {

constexpr std::size_t kHabilitado = 3; // column of the blocks list
// So many writes in a row, then a due read has its turn: a script that writes after every answer
// must not freeze the values it reads.
constexpr std::uint32_t kEscriturasSeguidas = 4;
// So many waiting blocks are looked at for one whose answer can be told while another's cannot.
constexpr int kMiradas = 16;

} // namespace

Poleo::Poleo(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
             EstacionesMudas& mudas, Vista& vista, Sello& sello,
             ArregloDeTemporizadores& Timer1_Bloques)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), mudas_(mudas),
      vista_(vista), sello_(sello), Timer1_Bloques_(Timer1_Bloques) {}

void Poleo::activarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    mudas_.olvidar(conexion);
    for (const Indice i : tablas_.conexiones[conexion].bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        b.sondeo = b.enDuda = b.saltado = false;
        // What rested because its station was silent is asked again: the link is a new one.
        if (!b.habilitadoPorRespuestas) rehabilitar(i);
        if (!b.activoPorDefecto && !b.activo) continue;
        publicacion_.ponerActivo(i, true);
        tablas_.ponerPendiente(i, true);
        Timer1_Bloques_[i].rearmar(b.scanMs);
    }
    buscoSiguienteAPolear(conexion);
}

void Poleo::desActivarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    ConexionIP& c = tablas_.conexiones[conexion];
    c.bloqueEnCurso = kNinguno;
    for (const Indice i : c.bloques) {
        Timer1_Bloques_[i].habilitar(false);
        tablas_.bloques[i].reintentos = 0;
    }
}

bool Poleo::tocaEscribir(const ConexionIP& c, Indice conexion) const {
    if (escrituras_ == nullptr || !c.escrituraPendiente) return false;
    return c.escriturasSeguidas < kEscriturasSeguidas || escrituras_->aMedias(conexion) ||
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
    const Indice bloque = elegir(conexion);
    if (bloque != kNinguno) polearBloque(bloque);
}

/// The next waiting block in turn. While the line is in doubt, one whose answer can be told goes
/// before those for which the line would have to be quiet, but before none of them twice.
Indice Poleo::elegir(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    if (c.bloqueDePrueba != kNinguno) {
        const BloqueLectura& b = tablas_.bloques[c.bloqueDePrueba];
        if (b.pendiente && b.activo && b.habilitadoPorRespuestas) return b.indice;
        c.bloqueDePrueba = kNinguno;
    }
    const std::size_t primera = tablas_.siguientePorPolear(conexion);
    if (primera == ConjuntoDePosiciones::kNinguna) return kNinguno;
    if (c.debidas.limpia()) return c.bloques[primera];
    std::size_t posicion = primera;
    for (int miradas = 0; miradas < kMiradas; ++miradas) {
        BloqueLectura& b = tablas_.bloques[c.bloques[posicion]];
        if (turnos_.permiso(conexion, registroDe(b.tramaSolicitud)).cuenta) return b.indice;
        if (b.saltado) break;
        b.saltado = true;
        posicion = tablas_.siguientePorPolear(conexion, posicion);
        if (posicion == primera) break;
    }
    return c.bloques[primera];
}

bool Poleo::polearBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (!b.tieneTrama || !turnos_.libre(b.idConexion)) return false;
    ConexionIP& c = tablas_.conexiones[b.idConexion];
    const Indice anterior = std::exchange(c.bloqueEnCurso, bloque);
    b.lecturaForzada = b.forzado;
    if (turnos_.enviar(b.idConexion, b.tramaSolicitud, registroDe(b.tramaSolicitud),
                       b.tiempoFueraMs) != Turnos::Envio::Hecho) {
        c.bloqueEnCurso = anterior;
        return false;
    }
    b.saltado = false;
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
    if (!b.activo) return Timer1_Bloques_[bloque].habilitar(false);
    vista_.txtTimer[bloque].agregar("Tic Timer Bloque " + sello_.ahora() + " : " + b.clave +
                                    "\r\n");
    if (b.habilitadoPorRespuestas) {
        vista_.txtTimer[bloque].agregar(" ----> En Tiempo de poleo " + sello_.ahora() + " : " +
                                        b.clave + "\r\n");
    } else {
        // Its rest is over: it is asked once.
        rehabilitar(i);
        b.sondeo = true;
        Timer1_Bloques_[bloque].rearmar(b.scanMs);
    }
    tablas_.ponerPendiente(i, true);
    // On a free connection nothing else waits, except writes, which go first.
    buscoSiguienteAPolear(b.idConexion);
}

void Poleo::rehabilitar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.habilitar(bloque, true);
    vista_.txtTimerIpPuerto[b.idConexion].agregar(sello_.ahora() + " HABILITACION de " + b.clave +
                                                  "\r\n");
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Habilitado desde " + sello_.ahora());
}

} // namespace kv
