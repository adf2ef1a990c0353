// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kv {

/// A duration as timers take it: whole milliseconds, at least 1 for any that is above 0.
[[nodiscard]] inline std::int64_t milisegundos(double segundos) {
    return segundos > 0 ? std::max<std::int64_t>(1, std::llround(segundos * 1000)) : 0;
}

} // namespace kv
