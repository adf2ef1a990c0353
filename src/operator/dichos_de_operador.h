// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/limites.h"
#include "text/idioma.h"

/// What an operator's order is refused with, and what is asked of him, both languages side by side.
namespace kv::dicho {

inline constexpr Frase kAtencion{"Atencion", "Attention"};
inline constexpr Frase kErrorDeIngreso{"Error de Ingreso\r\n%1: %2", "Entry error\r\n%1: %2"};
inline constexpr Frase kDireccion{"Dirección", "Address"};
inline constexpr Frase kValor{"Valor", "Value"};
inline constexpr Frase kScan{"Scan", "Scan"};
inline constexpr Frase kNivel{"Nivel", "Level"};
inline constexpr Frase kVeces{"Veces", "Times"};
inline constexpr Frase kFalta{"falta", "missing"};
inline constexpr Frase kNoEsNumero{"no es un número", "not a number"};
inline constexpr Frase kSinSiguiente{"no tiene siguiente", "there is no next one"};
static_assert(limite::kTiempoMinimo == 0.001 && limite::kTiempo == 86400.0 * 365);
inline constexpr Frase kScanFueraDeRango{"de 0,001 s a un año, o 0",
                                         "from 0.001 s to a year, or 0"};
inline constexpr Frase kFaltaNivelOVeces{"Error de Dato, en Nivel y/o Cantidad de Poleos",
                                         "The level and/or the number of polls is missing"};
inline constexpr Frase kNivelOVecesNoSonNumeros{
    "Error de Tipo de Dato, en Nivel y/o Cantidad de Poleos",
    "The level and/or the number of polls is not a whole number"};
inline constexpr Frase kSinConexion{"Imposible. Sin conexion con estacion",
                                    "Impossible. No connection with the station"};
inline constexpr Frase kBloqueDeshabilitado{"Imposible. Bloque deshabilitado",
                                            "Impossible. The block is disabled"};
inline constexpr Frase kPreguntaDeScan{
    "Scan Time del Bloque (segundos)\r\n%1/%2\r\n0: se lee al conectar y al forzar",
    "Scan time of the block (seconds)\r\n%1/%2\r\n0: read on connecting and when forced"};
inline constexpr Frase kNoSePuedeEscribir{"No se puede escribir %1", "%1 cannot be written"};
inline constexpr Frase kYApagado{"%1 (apagado)", "%1 (off)"};

} // namespace kv::dicho
