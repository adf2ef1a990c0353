// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/desconocidas.h"
#include "platform/trabajo.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace kv {

inline constexpr std::string_view kSeccionDeConfig = "CONFIG";
inline constexpr std::string_view kCantPuertos = "CANT_PUERTOS"; ///< its only key

// What stands before the number in the name of a port's section, and of an entry's key in it.
inline constexpr std::string_view kPrefijoDePuerto = "PUERTO";
inline constexpr std::string_view kPrefijoDeEsclavo = "Esclavo";
inline constexpr std::string_view kPrefijoDeBloque = "Bloque";

/// Where the value of a key stands in the driver configuration's bytes.
struct DatoIni {
    std::uint32_t numero = 0; ///< of the station or block entry; unused for a port's own keys
    std::uint32_t inicio = 0; ///< position of the value
    std::uint32_t linea = 0;  ///< 0: the key is not there
    std::uint8_t campo = 0;   ///< index into the table of names
    std::uint8_t largo = 0;   ///< of the value, at most kMaximoDeValor
};

enum class CampoDePuerto : std::uint8_t {
    Numero,
    Scan,
    LeerDespues,
    Reintentos,
    TiempoFuera,
    Tipo,
    SegReconeccion,
    CantEsclavos,
    CantBloques,
};
inline constexpr std::array<std::string_view, 9> kCamposDePuerto = {
    "NUMERO",           "DEFAULT_SCAN_TIME", "READ_AFTER_WRITE", "REINTENTOS_MAX", "TIME_OUT",
    "TIPO_PLC_DEFAULT", "SEG_RECONECCION",   "CantEsclavos",     "CantBloques"};

enum class CampoDeEsclavo : std::uint8_t { Numero, Ip, Puerto, Indice, Digitos };
inline constexpr std::array<std::string_view, 5> kCamposDeEsclavo = {"Numero", "Ip", "Puerto",
                                                                     "Indice", "Digitos"};

enum class CampoDeBloque : std::uint8_t {
    Bloque,
    Plc,
    Quantity,
    StarAdrees,
    ScanTime,
    Nivel,
    Numero,
    ActiveDefault,
};
inline constexpr std::array<std::string_view, 8> kCamposDeBloque = {
    "Bloque", "PLC", "Quantity", "StarAdrees", "ScanTime", "Nivel", "Numero", "ActiveDefault"};

[[nodiscard]] constexpr std::string_view nombreDe(CampoDePuerto c) {
    return kCamposDePuerto[static_cast<std::size_t>(c)];
}
[[nodiscard]] constexpr std::string_view nombreDe(CampoDeEsclavo c) {
    return kCamposDeEsclavo[static_cast<std::size_t>(c)];
}
[[nodiscard]] constexpr std::string_view nombreDe(CampoDeBloque c) {
    return kCamposDeBloque[static_cast<std::size_t>(c)];
}

/// An entry's key without its field.
struct EntradaDePuerto {
    std::string_view nombre; ///< "Bloque12_", of the text that was taken apart
    std::uint32_t numero = 0;
    bool esBloque = false; ///< else a station
};
/// Nothing for any other key. Letter case does not matter; numbers have no leading zeros.
[[nodiscard]] std::optional<EntradaDePuerto> entradaDe(std::string_view clave);

/// Ports are numbered in 16 bits, so that no section beyond this ordinal can matter.
inline constexpr std::uint32_t kMaximoDePuertos = 32768;

/// That of a section "PUERTOn"; 0 for any other name, and for one beyond them.
[[nodiscard]] std::uint32_t ordinalDePuerto(std::string_view seccion);

/// One "PUERTOn" section, its keys told apart and not yet understood.
struct SeccionDePuerto {
    std::uint32_t linea = 0;
    std::uint32_t repetida = 0; ///< line of another section of that name, or 0
    std::array<DatoIni, kCamposDePuerto.size()> propios;
    std::array<std::uint32_t, kCamposDePuerto.size()> repetidos{}; ///< lines, or 0
    std::vector<DatoIni> esclavos; ///< by entry number once the file is through
    std::vector<DatoIni> bloques;
};

/// The keys of a driver configuration, dispatched in one pass. The first section of a name and the
/// first key in it count; for entries that is left to the reader, who meets equal keys in the order
/// of the file.
struct ClavesDeDriver {
    DatoIni cantPuertos;
    std::uint32_t cantPuertosRepetida = 0; ///< its line, 0: it is not
    std::uint32_t lineaDeConfig = 0;
    std::uint32_t configRepetida = 0;
    std::map<std::uint32_t, SeccionDePuerto> puertos; ///< by ordinal, up to kMaximoDePuertos

    /// Adds those of `contenido`, to which they refer, and what means nothing to `desconocidas`.
    Trabajo leer(std::string_view contenido, Desconocidas& desconocidas, Porciones& porciones);
};

} // namespace kv
