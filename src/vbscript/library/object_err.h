// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

namespace vbscript {

/// The Err object: a view of the runtime's error state.
Value makeErr();

} // namespace vbscript
