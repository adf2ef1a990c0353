#pragma once

#include "core/tables/registros.h"

namespace kv {

/// What one tick of a timer base means for a duration that is counted in bases.
struct Cuenta {
    bool vencio = false; ///< the duration has passed
    double acortarA =
        0; ///< fraction of a base after which the next tick has to come; 0: a whole one
    double restantes = 0; ///< the count after this tick
};

/// Counts a tick of a duration of `cantidad` bases of which `contadas` have passed. The last,
/// incomplete base is made a shorter tick. `acortaEntera` says whether a last base that is exactly
/// a whole one ends the duration at its own tick (scan and reconnection) or one base later
/// (response time-out).
[[nodiscard]] inline Cuenta contarBase(double cantidad, double contadas, bool acortaEntera) {
    if (cantidad == 0 || contadas >= cantidad) return {true, 0, 0};
    Cuenta c{false, 0, contadas + 1};
    const double quedan = cantidad - c.restantes;
    if (quedan > 0 && (quedan < 1 || (acortaEntera && quedan == 1))) {
        c.acortarA = quedan;
        c.restantes = cantidad;
    }
    return c;
}

} // namespace kv
