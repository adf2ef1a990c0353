// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/token.h"
#include "vbscript/values/names.h"

#include <string_view>

namespace vbscript {

/// Cuts a text (UTF-8) into tokens. Throws CompileFault 1002, 1030..1033 with the place.
TokenList tokenize(std::string_view source, Names& names);

} // namespace vbscript
