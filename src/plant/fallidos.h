// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/momento.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kv {

/// How a try to read failed.
enum class FinDeIntento : std::uint8_t {
    SinNada, ///< nothing came in time
    Danada,  ///< bytes came that make no answer
    Dudosa   ///< an answer came that may be another register's
};

/// The tries in a row that failed, since the last accepted answer.
struct Fallidos {
    Momento desde; ///< empty: the last try was answered, or no try was made
    std::array<std::uint32_t, 3> cuantas{}; ///< by FinDeIntento
    void sumar(FinDeIntento cual, std::int64_t ahoraMs) {
        if (!desde.hay()) desde = Momento(ahoraMs);
        ++cuantas[static_cast<std::size_t>(cual)];
    }
    [[nodiscard]] std::uint32_t total() const { return cuantas[0] + cuantas[1] + cuantas[2]; }
};

} // namespace kv
