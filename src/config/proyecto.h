// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "config/exportacion.h"
#include "config/listas.h"
#include "config/problema.h"
#include "platform/trabajo.h"

#include <string>

namespace kv {

/// Which configuration the driver reads, derived from the settings file.
struct Ubicacion {
    std::string rutaProyecto; ///< as the settings say; empty when they name no project
    std::string rutaConfiguracion;
    std::string nombreProyecto; ///< what the main window shows
    std::string rutaExportacion;
    bool desdeExportacion = false;
};

/// Derives the paths and tells what is wrong with the project's path. A path without a folder of
/// its own is looked for in the program's folder.
[[nodiscard]] Ubicacion ubicarConfiguracion(Ajustes& ajustes, Problemas& problemas);

/// A configuration as it was found and read.
struct ConfiguracionLeida {
    Ubicacion ubicacion;
    ListasDeConfiguracion listas;
    Problemas problemas;
};

/// Locates the configuration and reads it: the project's export where there is one, else the INI
/// file at the configuration path.
[[nodiscard]] ConfiguracionLeida leerConfiguracionUbicada(Ajustes& ajustes,
                                                          const MensajeDeError& mensaje);
/// The same in portions, into `leida`, which is empty. All of them must outlive it.
Trabajo leerConfiguracionUbicada(Ajustes& ajustes, ConfiguracionLeida& leida,
                                 const MensajeDeError& mensaje, Porciones& porciones);

} // namespace kv
