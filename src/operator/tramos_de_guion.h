// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kv {

/// What a stretch of a script's line is, for colouring it.
enum class ClaseDeTramo : std::uint8_t { Palabra, Variable, Texto, Numero, Comentario };

struct TramoDeGuion {
    std::size_t desde;
    std::size_t largo;
    ClaseDeTramo clase;
};

/// The stretches of one line (UTF-16), from left to right; what lies between them is plain. No
/// stretch of the language is longer than a line, so each line is read on its own. A line that the
/// language refuses (a text without its end) is coloured as far as it goes. Linear.
[[nodiscard]] std::vector<TramoDeGuion> tramosDeGuion(std::u16string_view linea);

} // namespace kv
