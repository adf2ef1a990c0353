#pragma once

#include "link/turno.h"
#include "log/archivo_log.h"
#include "platform/arreglo_de_temporizadores.h"
#include "poll/estaciones_mudas.h"
#include "view/vista.h"

namespace kv {

/// The writes' side of a connection's turns.
class TurnoDeEscrituras {
  public:
    virtual ~TurnoDeEscrituras() = default;
    /// The connection is free and has writes to do: sends the next one. True when a request left or
    /// the line is being held back, so that no read may follow.
    virtual bool enviarSiguiente(Indice conexion) = 0;
    /// The first of its writes has read what it needs, and nothing may come between.
    [[nodiscard]] virtual bool aMedias(Indice conexion) const = 0;
};

/// The polling scheduler: block timers mark blocks due; a free connection gets its next request,
/// writes first, then due blocks in turn.
class Poleo {
  public:
    Poleo(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
          EstacionesMudas& mudas, Vista& vista, Sello& sello,
          ArregloDeTemporizadores& Timer1_Bloques);
    void escribirCon(TurnoDeEscrituras* escrituras) { escrituras_ = escrituras; }

    /// The connection came up: its enabled blocks become due and the first request leaves.
    void activarPoling_En_Socket(Indice conexion);
    /// The connection was lost: nothing is outstanding and no block timer runs.
    void desActivarPoling_En_Socket(Indice conexion);
    /// Chooses and sends the next request of a free connection; on any other it does nothing.
    void buscoSiguienteAPolear(Indice conexion);
    /// Sends the block's read request if its connection is free. True when it left.
    bool polearBloque(Indice bloque);
    /// The end of a connection's pause: its own next request, and that of one other connection in
    /// turn, so that one whose events were lost is found again.
    void alTerminarPausa(Indice conexion);

    /// Tick of a block's timer.
    void Timer1_Bloques_Timer(std::size_t bloque);

  private:
    [[nodiscard]] Indice elegir(Indice conexion);
    void rehabilitar(Indice bloque);
    [[nodiscard]] bool tocaEscribir(const ConexionIP& c, Indice conexion) const;

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    EstacionesMudas& mudas_;
    Vista& vista_;
    Sello& sello_;
    ArregloDeTemporizadores& Timer1_Bloques_;
    TurnoDeEscrituras* escrituras_ = nullptr;
    Indice cursorConexiones_ = 0;
};

} // namespace kv
