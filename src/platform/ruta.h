// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// Both "\" and "/" separate folders in the field's paths. What follows the last one.
[[nodiscard]] inline std::string_view nombreDeRuta(std::string_view ruta) {
    const auto i = ruta.find_last_of("\\/");
    return i == std::string_view::npos ? ruta : ruta.substr(i + 1);
}

/// Folder and name joined by the separator that the field's files use.
[[nodiscard]] inline std::string unirRuta(std::string_view carpeta, std::string_view nombre) {
    std::string ruta(carpeta);
    if (!ruta.empty() && ruta.back() != '/' && ruta.back() != '\\') ruta += '\\';
    ruta += nombre;
    return ruta;
}

} // namespace kv
