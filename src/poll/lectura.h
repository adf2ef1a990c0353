#pragma once

#include "link/turno.h"
#include "platform/arreglo_de_temporizadores.h"
#include "script/publicacion.h"

namespace kv {

/// Those whom it concerns that a station has answered.
class AlContestarEstacion {
  public:
    virtual ~AlContestarEstacion() = default;
    virtual void alContestar(Indice bloque) = 0;
};

/// Turns the valid answer of a read into the value of the polled register and settles the
/// transaction.
class Lectura {
  public:
    Lectura(Tablas& tablas, Turnos& turnos, Publicacion& publicacion, Vista& vista, Sello& sello,
            ArregloDeTemporizadores& Timer1_Bloques);
    void avisarA(AlContestarEstacion* destino) { destino_ = destino; }
    void interpretarTramaRecepcionada_OK(Indice conexion);

  private:
    void avanzarForzado(Indice bloque);

    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    Vista& vista_;
    Sello& sello_;
    ArregloDeTemporizadores& Timer1_Bloques_;
    AlContestarEstacion* destino_ = nullptr;
};

} // namespace kv
