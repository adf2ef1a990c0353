// SPDX-License-Identifier: Apache-2.0
#include "poll/lectura.h"

#include "plant/valor_y_estado.h"

namespace kv {

Lectura::Lectura(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                 EstacionesMudas& mudas, RelojDeBloques& reloj, Sucesos& sucesos)
    : bucle_(bucle), tablas_(tablas), turnos_(turnos), publicacion_(publicacion), mudas_(mudas),
      reloj_(reloj), sucesos_(sucesos) {}

void Lectura::contestada(Indice conexion, const Respuesta& respuesta) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.bloqueEnCurso;
    const double valor = valorDeRespuesta(respuesta);
    // The value is published last: whoever hears of it finds the block and its connection settled.
    if (c.bloqueDePrueba == i) c.bloqueDePrueba = kNinguno;
    reloj_.contestar(i);
    Suceso recibida{.que = Que::Recepcion, .conexion = conexion, .bloque = i, .numero = valor};
    recibida.poner(respuesta);
    sucesos_.decir(recibida);
    turnos_.pausar(conexion, c.recibidoUs);
    mudas_.alContestar(i);
    publicacion_.valorLeido(i, valor);
}

void Lectura::dudosa(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.bloqueEnCurso;
    reloj_.fallar(i, FinDeIntento::Dudosa);
    if (reloj_.dudar(i) && !reloj_.reintentar(i)) return deshabilitar(conexion, i);
    c.bloqueDePrueba = i;
    turnos_.pausar(conexion);
}

void Lectura::vencida(Indice conexion) {
    const Indice i = tablas_.conexiones[conexion].bloqueEnCurso;
    if (i == kNinguno) return turnos_.pausar(conexion);
    if (!tablas_.bloques[i].activo) {
        // Switched off while its request was out. The pause chooses what comes next, so that a
        // write that waits for its turn is not left waiting.
        reloj_.parar(i);
        return turnos_.pausar(conexion);
    }
    const ConexionIP& c = tablas_.conexiones[conexion];
    const bool danada = c.llegoBasura || !c.recepcion.empty();
    // On a lost link nothing was asked.
    if (turnos_.conectada(conexion))
        reloj_.fallar(i, danada ? FinDeIntento::Danada : FinDeIntento::SinNada);
    sucesos_.decir({.que = Que::TiempoFuera, .conexion = conexion, .bloque = i});
    if (!reloj_.reintentar(i)) return deshabilitar(conexion, i);
    reintentarBloque(i);
}

void Lectura::perdida(Indice conexion) { tablas_.conexiones[conexion].bloqueEnCurso = kNinguno; }

/// On a lost link nothing is sent and the time-out runs on.
void Lectura::reintentarBloque(Indice bloque) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    if (!turnos_.conectada(b.idConexion)) return;
    Suceso otra{.que = Que::Reintento,
                .detalle = static_cast<std::int16_t>(b.reintentos),
                .conexion = b.idConexion,
                .bloque = bloque};
    otra.poner(b.tramaSolicitud);
    sucesos_.decir(otra);
    turnos_.reenviar(b.idConexion, b.tramaSolicitud, b.tiempoFueraMs);
    bucle_.dejarCorrerPendientes();
}

void Lectura::deshabilitar(Indice conexion, Indice bloque) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const bool estabaOK = b.estado == kOk;
    ConexionIP& c = tablas_.conexiones[conexion];
    // It has had its turn: after its rest it waits like the others.
    if (c.bloqueDePrueba == bloque) c.bloqueDePrueba = kNinguno;
    reloj_.descansar(bloque, turnos_.descanso(b));
    turnos_.pausar(conexion);
    publicacion_.sinRespuesta(bloque, FraseDeEstado::PorTiempoFuera);
    if (turnos_.conectada(conexion)) mudas_.alAgotar(bloque, estabaOK);
}

} // namespace kv
