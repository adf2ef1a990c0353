// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

/// Tells on standard error what in a script (UTF-8) runs and is hardly meant, each as FILE(LINE,
/// COLUMN): aviso: what. Addresses are compared with the configuration in the script's folder, if
/// there is one.
void avisarDe(const std::string& archivo, const std::string& texto);

/// A script file's text in UTF-8. A file of UTF-8 gets a warning on standard error, any other is
/// Windows-1252. nullopt: the file cannot be read, is larger than any script, or begins with
/// the mark of UTF-8, which does not compile in the driver; standard error says which.
std::optional<std::string> leerGuion(const std::string& ruta);
