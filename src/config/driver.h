// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/problema.h"
#include "platform/archivos.h"
#include "platform/trabajo.h"

#include <string>

namespace kv {

/// Reads the driver configuration, an INI file, in one pass over its bytes. Replaces what the lists
/// hold. Never fails: what cannot be used is skipped and reported in `problemas`, the rest is read.
/// Memory is bounded by the size of the file, not by the quantities that it declares.
void leerConfiguracionDeDriver(Archivos& archivos, const std::string& ruta,
                               ListasDeConfiguracion& listas, Problemas& problemas);
/// The same in portions. All of them must outlive it; the file is read whole in the first.
Trabajo leerConfiguracionDeDriver(Archivos& archivos, std::string ruta,
                                  ListasDeConfiguracion& listas, Problemas& problemas,
                                  Porciones& porciones);

/// The same for content that is already in memory; `ruta` is the name that problems carry.
void leerDriverDeTexto(std::string_view contenido, const std::string& ruta,
                       ListasDeConfiguracion& listas, Problemas& problemas);

} // namespace kv
