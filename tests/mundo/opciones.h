// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/plan.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kv::mundo {

struct Opciones {
    std::uint64_t desde = 1, hasta = 1'000'000'000; ///< seeds
    double horas = 0;                               ///< simulated, in all; 0: no limit
    double cpuSegundos = 0;                         ///< 0: no limit
    double cuelgueSegundos = 60;                    ///< of one seed, then it is said to hang
    Tamano tamano;                                  ///< of every plant
    bool reducir = true;
    bool primera = false;                           ///< end with the first seed that breaks a rule
    bool detalle = false;                           ///< print every seed
    bool trazas = false;                            ///< print what the driver shows
    std::optional<std::vector<std::uint32_t>> solo; ///< play only these events
};

/// Nothing when the line is no good.
[[nodiscard]] std::optional<Opciones> leerOpciones(int cuantos, const char* const* argumentos);

} // namespace kv::mundo
