// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/problema.h"
#include "platform/archivos.h"
#include "platform/trabajo.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// What separates the fields of an export, in the bytes of Windows-1252.
inline constexpr std::string_view kDelimitador = "\xC4\xA7\xE6\xE3";

/// The fields of its records, each kind in the order of its own enumeration (exportacion.cpp).
inline constexpr std::array<std::string_view, 7> kCamposDePuertoExportado = {
    "Numero",         "DEFAULT_SCAN_TIME", "MIN_RECONECCION", "READ_AFTER_WRITE",
    "REINTENTOS_MAX", "TIME_OUT",          "TIPO_PLC_DEFAULT"};
inline constexpr std::array<std::string_view, 5> kCamposDeEstacionExportada = {
    "EsclavoNumero", "Digitos", "indice", "Ip", "puerto"};
inline constexpr std::array<std::string_view, 7> kCamposDeBloqueExportado = {
    "Bloque", "plc", "Quantity", "ScanTime", "StarAdrees", "nivel", "activo_Si_o_No_X_defecto"};

/// Called once when an export cannot be read to its end.
using MensajeDeError = std::function<void(std::string_view texto)>;

/// What stands between the delimiters of a line: the word of a marker, or "key:value".
[[nodiscard]] std::vector<std::string_view> camposDeExportacion(std::string_view linea);

/// Reads the supervisory project's export. Replaces what the lists hold. An error ends the reading
/// and is reported to `mensaje` ("Error al abrir el archivo") and in `problemas`; the records
/// before it stay. All of them must outlive it; the file is read whole in the first portion.
Trabajo leerConfiguracionDeProyecto(Archivos& archivos, std::string rutaExportacion,
                                    ListasDeConfiguracion& listas, Problemas& problemas,
                                    const MensajeDeError& mensaje, Porciones& porciones);

/// The same for content that is already in memory; `ruta` is the name that problems carry.
void leerProyectoDeTexto(std::string_view contenido, const std::string& ruta,
                         ListasDeConfiguracion& listas, Problemas& problemas,
                         const MensajeDeError& mensaje);

} // namespace kv
