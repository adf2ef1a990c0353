// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/problema.h"

#include <string>
#include <string_view>

namespace kv {

/// The configuration as a table for a spreadsheet: a row for each port, station and block, columns
/// named as their keys. CSV in UTF-8 with its mark, separated by semicolons, with decimal commas
/// and CRLF: what a spreadsheet in Spanish opens at a double click and writes again.
[[nodiscard]] std::string planillaDe(const ListasDeConfiguracion& listas);

/// The way back. Also takes commas or tabs for separators, decimal points, Windows-1252 and columns
/// in any order. What is wrong is reported with its row, as a line of `ruta`, and its column; then
/// the lists are not to be used. Lines of the lists are rows.
void leerPlanilla(std::string_view contenido, const std::string& ruta,
                  ListasDeConfiguracion& listas, Problemas& problemas);

/// The driver configuration that reads as these lists, in the bytes of its file.
[[nodiscard]] std::string iniDe(const ListasDeConfiguracion& listas);

} // namespace kv
