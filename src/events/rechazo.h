// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// Refusals that the operator's box has words of its own for, and those that the log has.
enum class ClaseDeRechazo : std::int16_t { Otra, SinPlc, SinConexion, Anotada };

/// What the text of a refused write says. `direccion` is the address as it was given.
struct TextoDeRechazo {
    std::string_view direccion, motivo, origen;
    std::string_view clave = {}; ///< of the block, where there is a wording of its own

    [[nodiscard]] std::string unir() const;
    /// The parts point into the text.
    [[nodiscard]] static TextoDeRechazo partir(std::string_view texto);
};

/// Who asks when a script does.
inline constexpr std::string_view kOrigenGuion = "guion";

} // namespace kv
