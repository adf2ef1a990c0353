#pragma once

#include "link/turno.h"
#include "platform/arreglo_de_temporizadores.h"
#include "poll/estaciones_mudas.h"
#include "script/publicacion.h"
#include "view/vista.h"

namespace kv {

/// Reads that end without an accepted answer: retries, and after them BAD and a rest.
class TiemposFuera {
  public:
    TiemposFuera(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                 EstacionesMudas& mudas, Vista& vista, Sello& sello,
                 ArregloDeTemporizadores& Timer1_Bloques);

    /// Tick of the time-out of a connection that waits for the answer to a read.
    void ticDeLectura(Indice conexion);
    /// An answer came of which nobody can tell whether it is the read's. The block has the next
    /// turn whose answer counts. Being asked on trial hurts no healthy block, so one such try in a
    /// row is not counted.
    void respuestaDudosa(Indice conexion);
    /// Sends the block's request again; on a lost link nothing is sent and the time-out runs on.
    void reintentarBloque(Indice bloque);

  private:
    [[nodiscard]] static bool quedanIntentos(const BloqueLectura& b) {
        return !b.sondeo && b.reintentos < b.reintentosMax;
    }
    void deshabilitar(Indice conexion, Indice bloque);

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    EstacionesMudas& mudas_;
    Vista& vista_;
    Sello& sello_;
    ArregloDeTemporizadores& Timer1_Bloques_;
};

} // namespace kv
