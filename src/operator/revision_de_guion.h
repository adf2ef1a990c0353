// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/problema.h"
#include "plant/direcciones.h"
#include "platform/archivos.h"

#include <string>

namespace kv {

/// Adds what is wrong with the script beside a driver configuration, and what in it is hardly
/// meant. No script is no problem.
void revisarGuion(Archivos& archivos, const std::string& rutaDeConfiguracion,
                  const DireccionesDePlanta& planta, Problemas& problemas);

} // namespace kv
