// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace kv {

/// A moment of the clock that never goes back, to a tenth of a second, in half the room.
class Momento {
  public:
    Momento() = default;
    explicit Momento(std::int64_t ms) : decimas_(static_cast<std::uint32_t>(ms / 100 + 1)) {}
    [[nodiscard]] bool hay() const { return decimas_ != 0; }
    /// Milliseconds; of one that there is.
    [[nodiscard]] std::int64_t ms() const { return (std::int64_t{decimas_} - 1) * 100; }

  private:
    std::uint32_t decimas_ = 0;
};

} // namespace kv
