#pragma once

#include "platform/procesos.h"

#include <string_view>

namespace kv {

/// True when more than two processes have the program's name in theirs, whatever the case of
/// letters. False when they cannot be listed: start-up goes on.
[[nodiscard]] bool SeRepiteProgramaEnRunTime(Procesos& procesos, std::string_view programa);

} // namespace kv
