// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/runtime.h"

#include <span>

namespace vbscript {

using Arguments = std::span<Value>;
using BuiltinFunction = Value (*)(Runtime& rt, Arguments args);

struct Builtin {
    const char* name;
    BuiltinFunction run;
    std::uint8_t least, most; ///< Arguments; others are error 450.
};

struct BuiltinConstant {
    const char* name;
    Value value;
};

} // namespace vbscript
