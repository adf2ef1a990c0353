// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ClienteKV2200/linea_de_orden.h"

#include <iosfwd>

namespace kv::cliente {

/// One order carried out by the local door of the driver whose folder the order names. Gives the
/// exit code. What it waits for has a bound: an answer `esperaSegundos`, to watch
/// `duranteSegundos`, 0: until it is stopped.
[[nodiscard]] int hacerLocal(const Orden& orden, std::ostream& salida, std::ostream& errores);

} // namespace kv::cliente
