// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/direcciones.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// What may be meant by the name that is being typed.
struct Completado {
    std::string empezado;              ///< the part of the name that is there
    std::vector<std::string> opciones; ///< in the order of the alphabet, at most `kMaximo`
    static constexpr std::size_t kMaximo = 200;
};

/// How the name could go on at whose end the cursor is. `antes` is the script (UTF-8) up to the
/// cursor, `despues` what follows. Behind "mw." and "Label." their members, also where With says
/// so; in a text only names of the plant's registers; nothing in a remark. Else also procedures and
/// variables of the script, and the language's functions. Linear in the script.
[[nodiscard]] Completado completarGuion(std::string_view antes, std::string_view despues,
                                        const DireccionesDePlanta& planta);

} // namespace kv
