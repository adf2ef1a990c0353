// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/validacion.h"

#include <map>
#include <string>
#include <vector>

namespace kv {

/// What the blocks of a connection ask of it, beside what its pause lets it give: one request at a
/// time, the next one the pause after the answer. Blocks that are switched off, have a scan of 0 or
/// cannot be polled ask for nothing.
struct Presupuesto {
    std::map<double, double> lecturas; ///< how many registers, by their scan in seconds
    double registros = 0;
    double pedidas = 0; ///< reads a second
    double permite = 0; ///< reads a second, if answers took no time; infinite without a pause
    [[nodiscard]] bool alcanza() const { return pedidas <= permite; }
};

/// One for each connection of `v`, for a pause in milliseconds.
[[nodiscard]] std::vector<Presupuesto> presupuestos(const ListasDeConfiguracion& listas,
                                                    const Validacion& v, double pausaMs);
/// "0,5": as people read it, with one decimal below ten, and rounded down, so that it never says
/// more than is so.
[[nodiscard]] std::string porSegundo(double lecturas);
/// "16 bloques a 0,2 s piden 80 lecturas/s; la pausa de 800 ms permite 1,2".
[[nodiscard]] std::string textoDePresupuesto(const Presupuesto& p, double pausaMs);
/// Tells every connection that is asked for more than it can give.
void revisarPresupuestos(const ListasDeConfiguracion& listas, const Validacion& v,
                         const std::vector<Presupuesto>& todos, double pausaMs,
                         Problemas& problemas);

} // namespace kv
