// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/engine.h"

#include <string>

namespace kv {

/// A script's value for people: numbers and dates as the script would print them, texts in quotes,
/// of an array how many elements it has. At most `largo` bytes of a text.
[[nodiscard]] std::string valorVisible(const vbscript::Engine& motor, const vbscript::Value& valor,
                                       std::size_t largo);

} // namespace kv
