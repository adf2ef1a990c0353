// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "poll/estaciones_mudas.h"
#include "poll/lectura.h"
#include "poll/reloj_de_bloques.h"

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

/// The polling scheduler: block clocks mark blocks due; a free connection gets its next request,
/// writes first, then due blocks in turn.
class Poleo final {
  public:
    Poleo(Bucle& bucle, Tablas& tablas, Turnos& turnos, Lectura& lectura, EstacionesMudas& mudas,
          RelojDeBloques& reloj, TurnoDeEscrituras& escrituras, Sucesos& sucesos);

    /// The connection came up: its enabled blocks become due and the first request leaves.
    void activarPoling_En_Socket(Indice conexion);
    /// The connection was lost: nothing is outstanding and no block's clock runs.
    void desActivarPoling_En_Socket(Indice conexion);
    /// Chooses and sends the next request of a free connection; on any other it does nothing.
    void buscoSiguienteAPolear(Indice conexion);
    /// The end of a connection's pause: its own next request, and that of one other connection in
    /// turn, so that one whose events were lost is found again.
    void alQuedarLibre(Indice conexion);

  private:
    [[nodiscard]] Indice elegir(Indice conexion);
    void polearBloque(Indice bloque);
    [[nodiscard]] bool tocaEscribir(const ConexionIP& c, Indice conexion) const;

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Lectura& lectura_;
    EstacionesMudas& mudas_;
    RelojDeBloques& reloj_;
    TurnoDeEscrituras& escrituras_;
    Sucesos& sucesos_;
    Indice cursorConexiones_ = 0;
};

} // namespace kv
