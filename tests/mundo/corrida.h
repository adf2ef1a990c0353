// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "main/salida_de_traza.h"
#include "mundo/historia.h"
#include "mundo/plan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kv::mundo {

/// What came of one life of a plant.
struct Resultado {
    std::string fallo; ///< the rule that broke; empty: all held
    std::int64_t simuladoMs = 0;
    std::uint64_t sucesos = 0;      ///< events handled by the driver
    std::uint64_t faltas = 0;       ///< events of the history that took effect
    std::uint64_t comprobadas = 0;  ///< rules checked
    std::uint64_t intercambios = 0; ///< requests that the stations answered
    std::uint64_t disculpas = 0;    ///< wrong values for which noise is to blame
    std::uint64_t recargas = 0;     ///< of the configuration, in the midst of it all
    std::int64_t calmaMs = 0;       ///< how long the plant took to be well again
};

/// Lives the plant through the history and the calm after it. `trazas` is told what the driver
/// shows.
[[nodiscard]] Resultado vivir(const Plan& plan, const std::vector<Episodio>& historia,
                              SalidaDeTraza* trazas = nullptr);

} // namespace kv::mundo
