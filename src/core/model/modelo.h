#pragma once

#include "core/tables/tablas.h"
#include "link/conexiones.h"
#include "platform/arreglo_de_temporizadores.h"
#include "platform/sello.h"
#include "script/publicacion.h"
#include "ui/view/vista.h"

#include <string>

namespace kv {

/// Builds runtime records: ports, stations with their connections, read blocks with their
/// variables, bits. Each record is complete when its operation returns: its rows, boxes, tabs,
/// timers and published variables exist.
class Modelo {
  public:
    Modelo(Tablas& tablas, GestorDeConexiones& conexiones, Publicacion& publicacion, Vista& vista,
           Sello& sello, ArregloDeTemporizadores& Timer1_Bloques);

    /// Seconds where times are meant. `leerDespuesDeEscribir` is accepted and not kept.
    void levantarPuerto(double numero, double tiempoFuera, double scanPorDefecto,
                        double reintentosMax, double segReconeccion, double tipoPlcPorDefecto,
                        bool leerDespuesDeEscribir);
    /// A station that its connection already has (same `indice`) changes nothing; nor does one
    /// whose numbers do not fit 16 bits.
    void levantarEstacion(double puerto, const std::string& ip, const std::string& puertoTCP,
                          double numero, double digitos, double indice);
    /// Index of the new block, or -1 when its port or station does not exist, or the quantity,
    /// level or scan time is none that a block can have. An address or station index that fits no
    /// frame gives a block that is listed and published and never polled.
    double levantarBloquePoleo(double puerto, double plc, const std::string& direccion,
                               double cantidad, double scanSegundos, bool activo, double nivel);
    /// The bit variable `bit` (0 to 15) of slot `k`; nothing if it exists, or if the block's
    /// address is no decimal number.
    void levantarBitDeDireccion(Indice bloque, std::size_t k, std::size_t bit);

    static constexpr double kCantidadMaxima = 10'000; ///< variables of a block
    static constexpr double kNivelMaximo = 10'000;
    static constexpr double kScanMaximo = 86400.0 * 365; ///< seconds

  private:
    Indice levantarConexion(double puerto, const std::string& ip, const std::string& puertoTCP);
    void copiarDePuerto(BloqueLectura& b, const Puerto& puerto) const;
    void levantarVariables(BloqueLectura& b);
    void levantarControles(const BloqueLectura& b);

    Tablas& tablas_;
    GestorDeConexiones& conexiones_;
    Publicacion& publicacion_;
    Vista& vista_;
    Sello& sello_;
    ArregloDeTemporizadores& Timer1_Bloques_;
};

} // namespace kv
