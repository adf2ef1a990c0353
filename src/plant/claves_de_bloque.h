// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// Port, station and start address joined by points: "1.1.10".
[[nodiscard]] std::string claveDeBloque(double puerto, double plc, std::string_view direccion);
/// "MW_" and the key with "_" for ".": "MW_1_1_10".
[[nodiscard]] std::string nombreDeScript(std::string_view clave);

/// The registers of a configured block of `cantidad` registers: its start as it is written, then
/// the following ones in hexadecimal, with the start's number of digits and its case of letters
/// (upper where it has no letter), as far as they fit 00 to FF. A start that is no register gives
/// itself alone.
[[nodiscard]] std::vector<std::string> registrosDeBloque(std::string_view direccion,
                                                         double cantidad);

} // namespace kv
