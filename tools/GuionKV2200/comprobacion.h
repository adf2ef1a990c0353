// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Tells on standard error what in a script (UTF-8) runs and is hardly meant, each as FILE(LINE,
/// COLUMN): aviso: what. Addresses are compared with the configuration in the script's folder, if
/// there is one.
void avisarDe(const std::string& archivo, const std::string& texto);
