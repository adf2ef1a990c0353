// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/direcciones.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// What in a script runs and is hardly meant. Line and column count from 1.
struct AvisoDeGuion {
    int linea = 0;
    int columna = 0;
    std::string texto;
    std::string enIngles;
    friend bool operator==(const AvisoDeGuion&, const AvisoDeGuion&) = default;
};

/// Where a script is to run: the registers that it can name (null: nobody knows them, so any name
/// of a register is taken for one), and objects beside "mw" and "Label", each with its members.
struct LugarDelGuion {
    const DireccionesDePlanta* planta = nullptr;
    struct Objeto {
        std::string nombre;
        std::vector<std::string> miembros;
    };
    std::vector<Objeto> objetos = {};
};

/// By place, at most some hundreds; nothing for a text that does not compile.
[[nodiscard]] std::vector<AvisoDeGuion> avisosDeGuion(std::string_view texto,
                                                      const LugarDelGuion& lugar);

/// That a script file's bytes are UTF-8, at their first letter that a driver, which reads
/// Windows-1252, takes for others.
[[nodiscard]] std::optional<AvisoDeGuion> avisoDeUtf8(std::string_view bytes);

} // namespace kv
