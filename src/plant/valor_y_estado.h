// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace kv {

inline constexpr double kOk = 6;
inline constexpr double kBad = 13;

/// "OK" for 6, "BAD" for 13, nothing for any other code.
[[nodiscard]] std::string_view textoEstado(double codigo);

/// Bit `b` (0 to 15) of a register's value: 0 or 1.
[[nodiscard]] double bitDe(double valor, std::size_t b);

} // namespace kv
