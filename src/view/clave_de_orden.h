// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// What the texts of a column are, for an operator who sorts by it.
enum class Especie : std::uint8_t {
    Texto,     ///< numbers inside count as numbers: "PLC 9" comes before "PLC 10"
    Numero,    ///< what is no number comes last
    Direccion, ///< parts between points are hexadecimal numbers: "1.1.F" comes before "1.1.10"
    Fecha,     ///< "HH:mm:ss DD-MM-YYYY"
};

/// A text whose byte order is the order in which operators expect to see the original ones.
[[nodiscard]] std::string claveDeOrden(Especie especie, std::string_view texto);

} // namespace kv
