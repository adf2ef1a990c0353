// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace kv {

/// The word with bit `bit` (0 to 15) set, or cleared when `marcado` is false. Clearing a bit also
/// clears every bit above 15. Numbers are taken as 32-bit integers.
[[nodiscard]] double SetearBIT_YDevolverPalabra(double palabra, int bit, bool marcado);

/// Bit `bit` of the word: 0 or 1.
[[nodiscard]] int wordbit(double palabra, int bit);

/// Key filter of boxes that take whole numbers: a digit or backspace (8) passes, any other key
/// becomes code 16, but for "." and "-" where they are allowed.
[[nodiscard]] std::int16_t ValidarIngresoDeNumeros(std::int16_t tecla, bool menos, bool punto);

} // namespace kv
