// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/comprobacion.h"
#include "platform/archivos.h"

#include <string>

namespace kv {

/// A script's path as people find it, or that no script lies there and which one is looked for.
[[nodiscard]] std::string queGuionHay(Archivos& archivos, const std::string& ruta);

/// Tells what script stands beside the configuration of `r`, what is wrong with it, and what in it
/// is hardly meant. No script is no problem.
void revisarGuion(Archivos& archivos, Revision& r);

} // namespace kv
