// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "script/miembros.h"
#include "vbscript/engine.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// What a script asked of "mw": its arguments in the order of the member's letters.
struct PedidoDelGuion {
    const MiembroDeMw& miembro;
    std::string texto;               ///< as the script has it; UTF-8
    std::array<double, 2> numeros{}; ///< a state is 0 or 1
    [[nodiscard]] std::string direccion() const;
};

/// Makes "mw" known to a script. `hacer` carries out what is asked; its result is the call's.
void agregarMw(vbscript::Engine& motor,
               const std::function<vbscript::Value(const PedidoDelGuion&)>& hacer);

/// What a script has made of "Label". Colours as scripts have them: blue, green and red, a byte
/// each; a number outside of that is the window's own colour.
struct LabelDelGuion {
    std::string Caption;
    std::int32_t BackColor = kDeVentana;
    std::int32_t ForeColor = kDeTexto;
    bool Visible = true;

    static constexpr std::int32_t kDeVentana = -2147483633; ///< the system's colour 15
    static constexpr std::int32_t kDeTexto = -2147483630;   ///< and 18
};

/// Makes "Label" known to a script. `cambio` is called with the property that was assigned and its
/// new value as a text.
void agregarLabel(
    vbscript::Engine& motor, const std::shared_ptr<LabelDelGuion>& label,
    const std::function<void(std::string_view propiedad, const std::string& valor)>& cambio);

/// The address that a variable's script name stands for: every "MW_" taken out, whatever its letter
/// case, and "_" turned into ".".
[[nodiscard]] std::string direccionDeNombre(std::string_view nombre);

} // namespace kv
