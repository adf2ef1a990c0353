#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kv {

/// Where a row of a window's list is: its number in that list. Rows are never removed.
using FilaDeLista = std::uint32_t;
inline constexpr FilaDeLista kSinFila = 0xFFFFFFFF;

/// The bytes of a request to a station.
using Solicitud = std::array<std::uint8_t, 7>;

/// A configured port: a group of stations that share settings. Blocks reach the record of port
/// number n at index n - 1.
struct Puerto {
    double numero = 0;
    double tiempoFuera = 0;    ///< seconds
    double scanPorDefecto = 0; ///< seconds
    double reintentosMax = 0;
    double segReconeccion = 0; ///< seconds
    double tipoPlcPorDefecto = 0;
    bool leerDespuesDeEscribir = false; ///< configuration only
};

/// A PLC reached over TCP.
struct Estacion {
    std::int16_t numero = 0;
    std::int16_t digitos = 0;
    std::int16_t indice = 0; ///< the station byte on the wire
    double numeroDeEstacion = 0;
    // Configuration only:
    std::int16_t puerto = 0;
    std::string ip;
    std::string puertoTCP;
};

/// What the configuration says of a block.
struct ConfiguracionDeBloque {
    std::string nombre;    ///< configuration only
    std::string direccion; ///< as configured; hexadecimal where a frame is built
    double nivel = 0;
    double cantidad = 0;          ///< variables of the block
    double plc = 0;               ///< `numero` of the station
    double numeroConfigurado = 0; ///< configuration only
    double scanSegundos = 0;
    std::int16_t puerto = 0; ///< `numero` of the port
    bool activoPorDefecto = false;
};

/// A duration as a timer base and a count of bases, so that no timer runs longer than a minute.
struct BaseDeTiempo {
    double ms = 0;       ///< interval of one base
    double cantidad = 0; ///< 0: one base is the whole duration; may be fractional
};

} // namespace kv
