#pragma once

#include "link/turno.h"
#include "platform/arreglo_de_temporizadores.h"
#include "script/publicacion.h"
#include "ui/view/vista.h"

namespace kv {

/// The response time-out of reads: retries, and after them BAD and a rest.
class TiemposFuera {
  public:
    TiemposFuera(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                 Vista& vista, Sello& sello, ArregloDeTemporizadores& Timer1_Bloques);

    /// Tick of the time-out of a connection that waits for the answer to a read.
    void ticDeLectura(Indice conexion);
    /// Sends the block's request again; on a lost link nothing is sent and the time-out runs on.
    void reintentarBloque(Indice bloque);

  private:
    [[nodiscard]] bool contar(Indice conexion, Indice bloque);
    void deshabilitar(Indice conexion, Indice bloque);

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    Vista& vista_;
    Sello& sello_;
    ArregloDeTemporizadores& Timer1_Bloques_;
};

} // namespace kv
