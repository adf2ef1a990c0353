// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/comprobacion.h"

#include <string>

namespace kv {

/// The whole of a check as one JSON object on one line, in UTF-8, for programs that set up plants:
/// "resultado" is the exit code. Everything that is built, blocks excepted, is in it, whatever its
/// number; problems as far as they were kept.
[[nodiscard]] std::string informeJsonDe(const Revision& r);

} // namespace kv
