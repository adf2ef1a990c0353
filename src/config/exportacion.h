#pragma once

#include "config/listas.h"
#include "platform/archivos.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// What separates the fields of an export, in the bytes of Windows-1252.
inline constexpr std::string_view kDelimitador = "\xC4\xA7\xE6\xE3";

/// Told once when an export cannot be read to its end.
using MensajeDeError = std::function<void(std::string_view texto)>;

/// The value of one field of a record line, both in the file's bytes: empty when the line has no
/// such field; nothing when the field lacks its closing delimiter. Letter case does not matter.
[[nodiscard]] std::optional<std::string_view> campo(std::string_view linea, std::string_view clave);

/// Reads the supervisory project's export. Replaces what the lists hold. An error ends the reading,
/// is told to `mensaje` ("Error al abrir el archivo") and in `problemas`; the records before it
/// stay.
void leerConfiguracionDeProyecto(Archivos& archivos, const std::string& rutaExportacion,
                                 ListasDeConfiguracion& listas, Problemas& problemas,
                                 const MensajeDeError& mensaje);

/// The same for content that is already in memory; `ruta` is the name that problems carry.
void leerProyectoDeTexto(std::string_view contenido, const std::string& ruta,
                         ListasDeConfiguracion& listas, Problemas& problemas,
                         const MensajeDeError& mensaje);

} // namespace kv
