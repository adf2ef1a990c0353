#pragma once

#include "core/start/programa.h"

namespace kv {

/// The driver with its windows, until it is told to end: the exit code. The toolkit's loop is the
/// outer one and watches the driver's, in one thread.
[[nodiscard]] int correrConVentana(const Opciones& opciones);

} // namespace kv
