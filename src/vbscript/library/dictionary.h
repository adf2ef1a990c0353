// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/runtime.h"

namespace vbscript {

/// A new Scripting.Dictionary.
Value makeDictionary(Runtime& rt);

} // namespace vbscript
