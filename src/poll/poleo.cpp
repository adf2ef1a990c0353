// SPDX-License-Identifier: Apache-2.0
#include "poll/poleo.h"

#include "poll/lectura_en_turno.h"

#include <utility>

namespace kv {
namespace {

// So many writes in a row, then a due read has its turn: a script that writes after every answer
// must not freeze the values it reads.
constexpr std::uint32_t kEscriturasSeguidas = 4;

} // namespace

Poleo::Poleo(Bucle& bucle, Tablas& tablas, Turnos& turnos, Lectura& lectura, EstacionesMudas& mudas,
             RelojDeBloques& reloj, TurnoDeEscrituras& escrituras, Sucesos& sucesos)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), lectura_(lectura), mudas_(mudas),
      reloj_(reloj), escrituras_(escrituras), sucesos_(sucesos) {}

void Poleo::activarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    mudas_.olvidar(conexion);
    // What rested because its station was silent is asked again: the link is a new one.
    for (const Indice i : tablas_.conexiones[conexion].bloques)
        reloj_.empezar(i);
    buscoSiguienteAPolear(conexion);
}

void Poleo::desActivarPoling_En_Socket(Indice conexion) {
    turnos_.olvidar(conexion);
    tablas_.conexiones[conexion].bloqueEnCurso = kNinguno;
    for (const Indice i : tablas_.conexiones[conexion].bloques)
        reloj_.parar(i);
}

bool Poleo::tocaEscribir(const ConexionIP& c, Indice conexion) const {
    if (c.escrituras.empty()) return false;
    if (escrituras_.aMedias(conexion) ||
        tablas_.siguientePorPolear(conexion) == ConjuntoDePosiciones::kNinguna)
        return true;
    return c.escriturasSeguidas < kEscriturasSeguidas &&
           bucle_.reloj().monotonicoMs() >= c.leeHastaMs;
}

void Poleo::buscoSiguienteAPolear(Indice conexion) {
    if (!turnos_.libre(conexion)) return;
    ConexionIP& c = tablas_.conexiones[conexion];
    if (tocaEscribir(c, conexion) && escrituras_.enviarSiguiente(conexion)) {
        ++c.escriturasSeguidas;
        return;
    }
    const Indice bloque = elegir(conexion);
    if (bloque != kNinguno) polearBloque(bloque);
}

/// What goes before others because its answer can be told apart passes them over only once.
Indice Poleo::elegir(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice elegido = lecturaEnTurno(tablas_, turnos_, conexion).bloque;
    if (elegido == c.bloqueDePrueba) return elegido;
    c.bloqueDePrueba = kNinguno;
    if (elegido == kNinguno || c.debidas.limpia()) return elegido;
    std::size_t posicion = tablas_.siguientePorPolear(conexion);
    while (c.bloques[posicion] != elegido) {
        tablas_.bloques[c.bloques[posicion]].saltado = true;
        posicion = tablas_.siguientePorPolear(conexion, posicion);
    }
    return elegido;
}

void Poleo::polearBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    ConexionIP& c = tablas_.conexiones[b.idConexion];
    const Indice anterior = std::exchange(c.bloqueEnCurso, bloque);
    reloj_.salir(bloque);
    if (turnos_.enviar(b.idConexion, lectura_, b.tramaSolicitud, b.tiempoFueraMs) !=
        Turnos::Envio::Hecho) {
        c.bloqueEnCurso = anterior;
        return;
    }
    b.saltado = false;
    c.cursorBloques = b.posicionEnConexion;
    c.escriturasSeguidas = 0;
    Suceso sale{.que = Que::Envio, .conexion = b.idConexion, .bloque = bloque};
    sale.poner(b.tramaSolicitud);
    sucesos_.decir(sale);
    bucle_.dejarCorrerPendientes();
    bucle_.dejarCorrerPendientes();
}

void Poleo::alQuedarLibre(Indice conexion) {
    buscoSiguienteAPolear(conexion);
    const auto cuantas = static_cast<Indice>(tablas_.conexiones.limiteSuperior());
    if (cursorConexiones_ != conexion && cursorConexiones_ < cuantas)
        buscoSiguienteAPolear(cursorConexiones_);
    cursorConexiones_ = cursorConexiones_ + 1 < cuantas ? cursorConexiones_ + 1 : 0;
}

} // namespace kv
