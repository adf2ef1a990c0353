#pragma once

#include <optional>
#include <string>

/// A script file's text as UTF-8: from Windows-1252, unless the file is UTF-8 already. nullopt: it
/// cannot be read, or is larger than any script.
std::optional<std::string> leerGuion(const std::string& ruta);
