#pragma once

#include "core/start/programa.h"

namespace kv {

/// Whether windows can be shown here. The toolkit ends a process that has no screen, so it is tried
/// in a child; call before anything else has been started.
[[nodiscard]] bool hayPantalla();

/// The driver with its windows, until it is told to end: the exit code. The toolkit's loop is the
/// outer one and watches the driver's, in one thread.
[[nodiscard]] int correrConVentana(const Opciones& opciones);

} // namespace kv
