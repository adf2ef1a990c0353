// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"
#include "vbscript/surroundings/surroundings.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

/// A file of more bytes is no script for anybody: it is not run, nor shown, nor saved.
inline constexpr std::size_t kMaximoDelGuion = vbscript::longestSource;
static_assert(kMaximoDelGuion == std::size_t{2} << 20);
inline constexpr Frase kGuionDemasiadoLargo{"El guion tiene más de 2 MiB",
                                            "The script has more than 2 MiB"};

inline constexpr Frase kGuionConMarcaUtf8{
    "El archivo tiene la marca de UTF-8: hay que guardarlo como Windows-1252",
    "The file has the mark of UTF-8: it must be saved as Windows-1252"};
/// Says so in `error` where that is all that does not compile at the beginning of `texto` (UTF-8),
/// a file's bytes taken for Windows-1252.
void nombrarMarcaUtf8(std::string_view texto, vbscript::ScriptError& error);

/// What is wrong with a script, for the people of a plant. The language itself speaks English, and
/// scripts may compare its texts. What a script said itself, and what has no Spanish text, stays as
/// it is.
[[nodiscard]] std::string enCastellano(const vbscript::ScriptError& error);

} // namespace kv
