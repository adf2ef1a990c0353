// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/surroundings.h"

#include <string>

namespace kv {

/// What is wrong with a script, for the people of a plant. The language itself speaks English, and
/// scripts may compare its texts. What a script said itself, and what has no Spanish text, stays as
/// it is.
[[nodiscard]] std::string enCastellano(const vbscript::ScriptError& error);

} // namespace kv
