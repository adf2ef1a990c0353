// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// Port, station and start address joined by points: "1.1.10".
[[nodiscard]] std::string claveDeBloque(double puerto, double plc, std::string_view direccion);
/// What the names of a plant's variables begin with in a script, and those of their statuses end
/// with; scripts do not tell letter case apart.
inline constexpr std::string_view kPrefijoDeNombre = "MW_";
inline constexpr std::string_view kSufijoDeEstado = "_STATUS";
/// "MW_" and the key with "_" for ".": "MW_1_1_10".
[[nodiscard]] std::string nombreDeScript(std::string_view clave);
/// Whether a script would take it for a name of a variable of some plant.
[[nodiscard]] bool pareceNombreDeScript(std::string_view nombre);
/// The name whose status this is; a name that is no status's stays as it is.
[[nodiscard]] std::string_view sinEstado(std::string_view nombre);

/// The registers of a configured block of `cantidad` registers: its start as it is written, then
/// the following ones in hexadecimal, with the start's number of digits and its case of letters
/// (upper where it has no letter), as far as they fit 00 to FF. A start that is no register gives
/// itself alone.
[[nodiscard]] std::vector<std::string> registrosDeBloque(std::string_view direccion,
                                                         double cantidad);

} // namespace kv
