// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/conexiones.h"
#include "model/filas.h"
#include "plant/tablas.h"
#include "poll/reloj_de_bloques.h"
#include "script/publicacion.h"
#include "view/vista.h"

#include <string>

namespace kv {

/// Builds runtime records: ports, stations with their connections, read blocks with their
/// variables, bits. Each record is complete when its operation returns: its rows, timers and
/// published variables exist.
class Modelo {
  public:
    Modelo(Tablas& tablas, GestorDeConexiones& conexiones, Publicacion& publicacion,
           RelojDeBloques& reloj, Vista& vista);

    void levantarPuerto(const Puerto& puerto) { tablas_.puertos.agregar(puerto); }
    /// A station as configured. One that its connection already has (same `indice`) changes
    /// nothing.
    void levantarEstacion(const Estacion& configurada);
    /// A frame asks for one register, so a quantity of n becomes n blocks of one register each, as
    /// far as the addresses go. Index of the first, or -1 when the port or station does not exist,
    /// or the quantity, level or scan time is out of a block's range. An address or station index
    /// that fits no frame gives a block that is listed and published and never polled.
    double levantarBloquePoleo(double puerto, double plc, const std::string& direccion,
                               double cantidad, double scanSegundos, bool activo, double nivel);
    /// What the configuration says otherwise from now on. False: the port is as it was; else
    /// `tomarTiempos` follows for its connections.
    bool cambiarPuerto(Indice cual, const Puerto& puerto);
    void tomarTiempos(Indice conexion);
    /// The look-ups of the tables are put in order, and `terminarCambios` called, after all of
    /// these.
    void cambiarNivel(Indice bloque, double nivel);
    void retirarBloque(Indice bloque);
    /// Its blocks have been retired; a connection without stations goes with its last one.
    void retirarEstacion(Indice conexion, Indice estacion);
    void terminarCambios();
    /// The bit variable `bit` (0 to 15) of a block's register; nothing if it exists.
    void levantarBitDeDireccion(Indice bloque, std::size_t bit);

  private:
    [[nodiscard]] static std::string rotulo(const Estacion& e);
    static void anotarPaciencia(ConexionIP& c, const BloqueLectura& b);
    Indice levantarConexion(double puerto, const std::string& ip, const std::string& puertoTCP);
    [[nodiscard]] Indice levantarRegistro(const Tablas::LugarDeEstacion& lugar, double puerto,
                                          const std::string& direccion, double scanSegundos,
                                          bool activo, double nivel, Indice primero);
    static void copiarDePuerto(BloqueLectura& b, const Puerto& puerto);
    void levantarVariable(BloqueLectura& b);
    void levantarControles(const BloqueLectura& b);

    Tablas& tablas_;
    GestorDeConexiones& conexiones_;
    Publicacion& publicacion_;
    RelojDeBloques& reloj_;
    Vista& vista_;
    FilasDeVariables filasDeVariables_;
    FilasDeBloques filasDeBloques_;
};

} // namespace kv
