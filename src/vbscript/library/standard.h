// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/library.h"

namespace vbscript {

/// All functions, constants and classes of the language. Made anew for each module: values are not
/// shared between threads.
[[nodiscard]] Provisions standardProvisions();

} // namespace vbscript
