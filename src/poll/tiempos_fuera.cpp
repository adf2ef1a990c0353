#include "poll/tiempos_fuera.h"

#include "poll/cuenta.h"
#include "text/numeros.h"

#include <cmath>

namespace kv {
namespace {

constexpr std::size_t kHabilitado = 3; // column of the blocks list

} // namespace

TiemposFuera::TiemposFuera(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                           Vista& vista, Sello& sello, ArregloDeTemporizadores& Timer1_Bloques)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), vista_(vista),
      sello_(sello), Timer1_Bloques_(Timer1_Bloques) {}

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
    if (!contar(conexion, i)) return;
    if (b.reintentos < b.reintentosMax) {
        b.reintentos += 1;
        reintentarBloque(i);
    } else {
        deshabilitar(conexion, i);
    }
}

/// True when the request has expired.
bool TiemposFuera::contar(Indice conexion, Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const Cuenta cuenta =
        contarBase(b.tiempoFueraCantidadBases, b.tiempoFueraBasesRestantes, false);
    b.tiempoFueraBasesRestantes = cuenta.restantes;
    if (cuenta.acortarA > 0)
        turnos_.acortarTiempoFuera(conexion, cuenta.acortarA * b.tiempoFueraBaseMs);
    return cuenta.vencio;
}

void TiemposFuera::reintentarBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    ConexionIP& c = tablas_.conexiones[b.idConexion];
    if (!turnos_.conectada(b.idConexion)) return;
    c.bloqueEnCurso = bloque;
    c.posicionBloqueEnCurso = b.posicionEnConexion;
    vista_.txtTramas.agregar(sello_.ahora() + " REINTENTO " + textoDeNumero(b.reintentos) +
                             " Bloque: " + b.clave + " Envio -> " + b.tramaSolicitudTexto + "\r\n");
    turnos_.reenviar(b.idConexion, b.tramaSolicitud, Turnos::plazoDe(b));
    bucle_.dejarCorrerPendientes();
}

void TiemposFuera::deshabilitar(Indice conexion, Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.reintentos = 0;
    b.reconeccionBasesRestantes = 0;
    b.tiempoFueraBasesRestantes = 0;
    tablas_.habilitar(bloque, false);
    Timer1_Bloques_[bloque].rearmar(std::llround(b.reconeccionBaseMs));
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Deshabilitado por " + textoDeNumero(b.segReconeccion) +
                                            "(s) Desde " + sello_.ahora());
    const std::string linea = sello_.ahora() + " Deshabilitacion de " + b.clave + "\r\n";
    vista_.txtTimerIpPuerto[conexion].agregar(linea);
    vista_.txtTramas.agregar(linea);
    turnos_.pausar(conexion);
    publicacion_.bloqueSinRespuesta(bloque);
}

} // namespace kv
