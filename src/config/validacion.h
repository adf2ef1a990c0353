// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/problema.h"
#include "platform/trabajo.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

inline constexpr double kMaximoDeVariables = 1'000'000; ///< of the whole plant, one a register

/// What becomes of a configuration record.
enum class Suerte : std::uint8_t {
    NoConstruir,
    Construir,
    SinSondeo, ///< built, listed, stays BAD: no frame can ask for it or no link can reach it
};

/// A connection as it will be built: stations with the same address share it.
struct ConexionPrevista {
    std::string ip;
    std::string puertoTCP; ///< as its first station writes it
    std::int16_t puerto = 0;
    std::vector<std::size_t> estaciones; ///< indices into the lists; those that are built
    std::size_t bloques = 0;
    double variables = 0;
};

/// "address:port", as it can be shown.
[[nodiscard]] inline std::string direccionDe(const ConexionPrevista& c) {
    return sinComillas(c.ip + ":" + c.puertoTCP);
}

/// One answer per record of the lists, and the shape of what will be built.
struct Validacion {
    std::vector<Suerte> puertos;
    std::vector<Suerte> estaciones;
    std::vector<Suerte> bloques;
    /// The index of the station in the lists for every block that is built.
    std::vector<std::size_t> estacionDeBloque;
    std::vector<ConexionPrevista> conexiones;
    std::size_t bloquesConstruidos = 0;
    double variables = 0;
};

/// Why nobody changes over to these lists by a reload or an import, or nothing: they leave nothing
/// to poll.
[[nodiscard]] inline std::string porQueNoSeAdoptan(const ListasDeConfiguracion& listas,
                                                   const Validacion& validacion) {
    return validacion.bloquesConstruidos > 0 ? std::string()
                                             : listas.archivo + ": no queda ningún bloque";
}

/// Finds everything that is wrong before anything is built, each with file, line and consequence.
/// Times and retries of ports that would stop a timer for ever are brought back to their defaults
/// in `listas`; everything else stays as it is. Linear in the number of records.
[[nodiscard]] Validacion validar(ListasDeConfiguracion& listas, Problemas& problemas);
/// The same in portions, into `validacion`, which is empty. All of them must outlive it.
Trabajo validar(ListasDeConfiguracion& listas, Problemas& problemas, Validacion& validacion,
                Porciones& porciones);

/// Whether a name made from configured texts is an identifier of the script language. Only such
/// names are published.
[[nodiscard]] bool nombrePublicable(std::string_view nombre);

} // namespace kv
