// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"
#include "vbscript/surroundings/surroundings.h"

#include <cstddef>
#include <string>

namespace kv {

/// A file of more bytes is no script for anybody: it is not run, nor shown, nor saved.
inline constexpr std::size_t kMaximoDelGuion = vbscript::longestSource;
static_assert(kMaximoDelGuion == std::size_t{2} << 20);
inline constexpr Frase kGuionDemasiadoLargo{"El guion tiene más de 2 MiB",
                                            "The script has more than 2 MiB"};

/// What is wrong with a script, for the people of a plant. The language itself speaks English, and
/// scripts may compare its texts. What a script said itself, and what has no Spanish text, stays as
/// it is.
[[nodiscard]] std::string enCastellano(const vbscript::ScriptError& error);

} // namespace kv
