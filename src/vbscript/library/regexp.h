// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

#include <string>
#include <string_view>

namespace vbscript {

/// A new RegExp object.
Value makeRegExp();

/// A pattern in the syntax of ECMAScript 3 as PCRE2 (UTF-8) reads it. Throws Fault 5017..5021.
std::string translatePattern(std::u16string_view pattern);

} // namespace vbscript
