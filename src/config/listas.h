// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/problema.h"
#include "plant/configurados.h"
#include "plant/descripciones.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace kv {

/// The lines of the file on which a port's settings stand; those that the file leaves out count as
/// standing where the record does.
struct LineasDePuerto {
    std::uint32_t numero;
    std::uint32_t tiempoFuera = numero;
    std::uint32_t reintentosMax = numero;
    std::uint32_t segReconeccion = numero;
    std::uint32_t scanPorDefecto = numero;
};

/// The configuration as it was read, before anything is built from it, and beside every record the
/// line of the file that it begins on.
struct ListasDeConfiguracion {
    std::string archivo;
    std::vector<Puerto> puertos;
    std::vector<Estacion> estaciones;
    std::vector<ConfiguracionDeBloque> bloques;
    std::vector<LineasDePuerto> lineasDePuertos;
    std::vector<std::uint32_t> lineasDeEstaciones;
    std::vector<std::uint32_t> lineasDeBloques;
    Problemas ignoradas;           ///< keys, fields and sections that mean nothing
    Descripciones descripciones;   ///< of a table beside the configuration
    bool hayDescripciones = false; ///< whether the table that was read has a column for them
};

/// The number by which stations and blocks name their port: a whole number from 1 to 32767, or 0
/// for a port that cannot be built.
[[nodiscard]] inline std::int16_t puertoDeRegistros(double numero) {
    const bool sirve = numero >= 1 && numero <= 32767 && numero == std::floor(numero);
    return sirve ? static_cast<std::int16_t>(numero) : std::int16_t{0};
}

} // namespace kv
