// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// A file's bytes; nullopt: it cannot be read, or has more than `mayor`.
std::optional<std::string> leerArchivo(const std::string& ruta, std::size_t mayor);

/// A script file's text as UTF-8: from Windows-1252, unless the file is UTF-8 already. nullopt: it
/// cannot be read, or is larger than any script.
std::optional<std::string> leerGuion(const std::string& ruta);
