// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

#include <string_view>

namespace vbscript {

/// Numbers as they stand in source, always with a point. Each returns how many characters it used
/// and leaves Null in `v` for a number that is out of range.
std::size_t scanDecimal(std::string_view text, Value& v);
/// "&H1F", "&O17", "&17", with an optional "&" at the end. 0: not such a number.
std::size_t scanRadix(std::string_view text, Value& v);

} // namespace vbscript
