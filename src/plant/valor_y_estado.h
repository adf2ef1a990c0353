// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace kv {

inline constexpr double kOk = 6;
inline constexpr double kBad = 13;

/// "OK" for 6, "BAD" for 13, nothing for any other code.
[[nodiscard]] std::string_view textoEstado(double codigo);

/// Bit `bit` of a register's value, or of a word made for one: 0 or 1. Its number is taken modulo
/// 16.
[[nodiscard]] int wordbit(double palabra, int bit);

} // namespace kv
