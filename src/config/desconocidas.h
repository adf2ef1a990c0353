// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/problema.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// The keys of the driver's own section of the settings file.
[[nodiscard]] std::vector<std::string_view> clavesDeAjustes();

/// What a misspelt name may have been meant to be, as a question to be put behind it; empty when no
/// name is near.
[[nodiscard]] std::string talVez(std::string_view texto, std::span<const std::string_view> nombres);

// Each tells every section, key and field of a file that means nothing, once for a name however
// often it stands there, with the nearest known one. `contenido` are the bytes of the file. Linear.

void revisarNombresDeAjustes(std::string_view contenido, const std::string& archivo,
                             Problemas& problemas);
void revisarNombresDeDriver(std::string_view contenido, const std::string& archivo,
                            Problemas& problemas);
void revisarNombresDeExportacion(std::string_view contenido, const std::string& archivo,
                                 Problemas& problemas);

} // namespace kv
