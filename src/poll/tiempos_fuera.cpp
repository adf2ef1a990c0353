#include "poll/tiempos_fuera.h"

#include "plant/bases.h"
#include "text/numeros.h"

namespace kv {
namespace {

constexpr std::size_t kHabilitado = 3; // column of the blocks list

} // namespace

TiemposFuera::TiemposFuera(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                           EstacionesMudas& mudas, Vista& vista, Sello& sello,
                           ArregloDeTemporizadores& Timer1_Bloques)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), mudas_(mudas),
      vista_(vista), sello_(sello), Timer1_Bloques_(Timer1_Bloques) {}

void TiemposFuera::ticDeLectura(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].bloqueEnCurso;
    if (i == kNinguno) return turnos_.pausar(conexion);
    BloqueLectura& b = tablas_.bloques[i];
    if (!b.activo) {
        // Switched off while its request was out. The pause chooses what comes next, so that a
        // write that waits for its turn is not left waiting.
        Timer1_Bloques_[i].habilitar(false);
        return turnos_.pausar(conexion);
    }
    vista_.txtTimerIpPuerto[conexion].agregar(sello_.ahora() + " Tic Timer Time Out " + b.clave +
                                              "\r\n");
    if (!quedanIntentos(b)) return deshabilitar(conexion, i);
    b.reintentos += 1;
    reintentarBloque(i);
}

void TiemposFuera::respuestaDudosa(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.bloqueEnCurso;
    BloqueLectura& b = tablas_.bloques[i];
    const bool cuenta = b.enDuda;
    b.enDuda = true;
    if (cuenta && b.activo) {
        if (!quedanIntentos(b)) return deshabilitar(conexion, i);
        b.reintentos += 1;
    }
    c.bloqueDePrueba = i;
    turnos_.pausar(conexion);
}

void TiemposFuera::reintentarBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    ConexionIP& c = tablas_.conexiones[b.idConexion];
    if (!turnos_.conectada(b.idConexion)) return;
    c.bloqueEnCurso = bloque;
    vista_.txtTramas.agregar(sello_.ahora() + " REINTENTO " + textoDeNumero(b.reintentos) +
                             " Bloque: " + b.clave + " Envio -> " + b.tramaSolicitudTexto + "\r\n");
    turnos_.reenviar(b.idConexion, b.tramaSolicitud, b.tiempoFueraMs);
    bucle_.dejarCorrerPendientes();
}

void TiemposFuera::deshabilitar(Indice conexion, Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const bool estabaOK = b.estado == kOk;
    ConexionIP& c = tablas_.conexiones[conexion];
    // It has had its turn: after its rest it waits like the others.
    if (c.bloqueDePrueba == bloque) c.bloqueDePrueba = kNinguno;
    b.reintentos = 0;
    b.enDuda = false;
    tablas_.habilitar(bloque, false);
    Timer1_Bloques_[bloque].rearmar(turnos_.descanso(b));
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Deshabilitado por " + textoDeNumero(b.segReconeccion) +
                                            "(s) Desde " + sello_.ahora());
    const std::string linea = sello_.ahora() + " Deshabilitacion de " + b.clave + "\r\n";
    vista_.txtTimerIpPuerto[conexion].agregar(linea);
    vista_.txtTramas.agregar(linea);
    turnos_.pausar(conexion);
    publicacion_.sinRespuesta(bloque, "BAD - Por TimeOut - Deshabilitacion");
    mudas_.alAgotar(bloque, estabaOK);
}

} // namespace kv
