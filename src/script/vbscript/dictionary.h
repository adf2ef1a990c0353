#pragma once

#include "script/vbscript/runtime.h"

namespace vbscript {

/// A new Scripting.Dictionary.
Value makeDictionary(Runtime& rt);

} // namespace vbscript
