// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/trabajo.h"

#include <array>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace kv {

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

/// Ports are numbered in 16 bits, so that no section beyond this ordinal can matter.
inline constexpr std::uint32_t kMaximoDePuertos = 32768;

/// One "PUERTOn" section, its keys told apart and not yet understood.
struct SeccionDePuerto {
    std::uint32_t linea = 0;
    std::array<DatoIni, kCamposDePuerto.size()> propios;
    std::vector<DatoIni> esclavos; ///< by entry number once the file is through
    std::vector<DatoIni> bloques;
};

/// The keys of a driver configuration, dispatched in one pass. The first section of a name and the
/// first key in it count; for entries that is left to the reader, who meets equal keys in the order
/// of the file.
struct ClavesDeDriver {
    DatoIni cantPuertos;
    std::map<std::uint32_t, SeccionDePuerto> puertos; ///< by ordinal, up to kMaximoDePuertos

    /// Adds those of `contenido`, to which they refer.
    Trabajo leer(std::string_view contenido, Porciones& porciones);
};

} // namespace kv
