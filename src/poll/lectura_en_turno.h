// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "plant/tablas.h"

namespace kv {

/// The read of a connection that leaves next.
struct LecturaEnTurno {
    Indice bloque = kNinguno; ///< kNinguno where no block waits
    bool cuenta = false;      ///< its answer could be told apart from those that are late
};

/// The next waiting block in turn. While late answers may still come, a block whose answer can be
/// told apart from them goes before those for which the line would have to be quiet first.
[[nodiscard]] LecturaEnTurno lecturaEnTurno(const Tablas& tablas, const Turnos& turnos,
                                            Indice conexion);

} // namespace kv
