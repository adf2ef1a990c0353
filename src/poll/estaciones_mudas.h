// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "poll/reloj_de_bloques.h"
#include "script/publicacion.h"

namespace kv {

/// Stations that are dead cost their neighbours on the same line a time-out for every request. So a
/// station that is known to be silent is asked once a rest, by one of its blocks for all of them,
/// without retries; the first accepted answer brings all of them back.
///
/// A station is known to be silent when `limite` of its blocks in a row have used up their tries
/// without any accepted answer from it in between, and then one that was still OK, if there is one,
/// has done so too: two bad registers side by side do not condemn a station.
class EstacionesMudas {
  public:
    EstacionesMudas(Tablas& tablas, Turnos& turnos, Publicacion& publicacion, RelojDeBloques& reloj,
                    Sucesos& sucesos);
    /// How many blocks in a row; 0 switches all of this off.
    void fijarLimite(double bloques) { limite_ = bloques; }

    /// The block has used up its tries and rests. `estabaOK`: it was OK until then.
    void alAgotar(Indice bloque, bool estabaOK);
    /// An answer of the block was accepted.
    void alContestar(Indice bloque);
    /// The block was switched on or off.
    void alCambiarActivo(Indice bloque);
    /// A new link: every station has its chance.
    void olvidar(Indice conexion);

  private:
    void enmudecer(Estacion& e, Indice salvo);
    /// Lets the next active block of the station rest for all; does nothing if no block is active.
    void turnarSondeo(Estacion& e);
    void callar(Indice bloque);

    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    RelojDeBloques& reloj_;
    Sucesos& sucesos_;
    double limite_ = 0;
};

} // namespace kv
