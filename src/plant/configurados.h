// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/fallidos.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

/// Where a row of a window's list is: its number in that list. Rows are never removed.
using FilaDeLista = std::uint32_t;
inline constexpr FilaDeLista kSinFila = 0xFFFFFFFF;

/// A configured port: a group of stations that share settings. Blocks reach the record of port
/// number n at index n - 1.
struct Puerto {
    double numero = 0;
    double tiempoFuera = 0;    ///< seconds
    double scanPorDefecto = 0; ///< seconds
    double reintentosMax = 0;
    double segReconeccion = 0;          ///< seconds
    double tipoPlcPorDefecto = 0;       ///< configuration only
    bool leerDespuesDeEscribir = false; ///< configuration only
};

/// A PLC reached over TCP.
struct Estacion {
    std::int16_t numero = 0;
    std::int16_t indice = 0; ///< the station byte on the wire
    double numeroDeEstacion = 0;
    std::vector<std::uint32_t> bloques; ///< its read blocks in creation order
    std::uint32_t aPedido = 0;          ///< of those, made because their register was asked for
    std::uint32_t agotados = 0;         ///< blocks in a row that gave no answer to all their tries
    bool retirada = false;              ///< no longer configured, see Tablas
    bool muda = false;        ///< known to be silent: one block asks for all, once after each rest
    bool dichaMuda = false;   ///< and it has not been said since that it answers
    std::uint32_t sondea = 0; ///< place in `bloques` of the one that asks
    Fallidos fallidos;        ///< of all its blocks
    // Configuration only:
    std::int16_t puerto = 0;
    std::int16_t digitos = 0;
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

} // namespace kv
