// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "model/modelo.h"
#include "poll/poleo.h"

#include <string>
#include <string_view>

namespace kv {

/// Forced reads and block control: one address, one block, a whole level, on and off, scan times.
class Forzado {
  public:
    Forzado(Tablas& tablas, Turnos& turnos, Publicacion& publicacion, Poleo& poleo,
            EstacionesMudas& mudas, RelojDeBloques& reloj, Modelo& modelo, Sucesos& sucesos);

    /// Blocks that forced reads may make of each station.
    void fijarAPedido(double bloques) { aPedidoMaximo_ = bloques; }
    /// Reads the block that holds an address port.PLC.register[.bit] now; makes a block for it when
    /// only the station exists. What came of it is said in the operator's box, and the kind of that
    /// event is given: `Forzado`, or why it leads nowhere. A block that is off is switched on, and
    /// `quien` is recorded as having done so.
    Que forzarPoleo(const std::string& direccion, std::string_view quien);
    void forzarBloque_porID(Indice bloque, std::string_view quien);
    void forzarBloque_porNivel(double nivel);
    /// `veces` above 0: reads every block of the level so often, on its own scan, and leaves it as
    /// it found it; 0 switches the level on, -1 off.
    /// `quien` is recorded as having switched it, here and in what follows. False when no block is
    /// of this level.
    bool forzarBloque_porNivel_NVeces(double nivel, double veces, std::string_view quien);
    /// Also ends a force by level that is running.
    void Activar_Desactivar_Bloque_Por_Solicitud(Indice bloque, bool estado,
                                                 std::string_view quien);
    void Activar_Dir(std::string_view clave, bool estado, std::string_view quien);
    /// Seconds, 0 or from a millisecond to a year; other values change nothing, like an index of no
    /// block. The block is read at once, and switched on if it is off.
    void ModificarScanDeBloque(double bloque, double segundos, std::string_view quien);

  private:
    Que forzarConocido(Indice bloque, const std::string& direccion, int bit,
                       std::string_view quien);
    void leerYa(Indice bloque);
    void conmutar(Indice bloque, bool activo, std::string_view quien);
    Que darDeAlta(const Tablas::LugarDeEstacion& lugar, const Puerto& puerto, double plc,
                  const std::string& registro, const std::string& direccion, int bit);
    void forzarVeces(Indice bloque, double veces, std::string_view nota);
    template <class Accion>
    bool enNivel(double nivel, const Accion& accion);
    Que decir(Que que, std::string_view dado, double numero = 0);

    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    Poleo& poleo_;
    EstacionesMudas& mudas_;
    RelojDeBloques& reloj_;
    Modelo& modelo_;
    Sucesos& sucesos_;
    double aPedidoMaximo_ = 0;
};

} // namespace kv
