// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace kv::mundo {

/// Chance that gives the same numbers for the same seed everywhere: no library distribution, no
/// floating point.
class Azar {
  public:
    /// Neighbouring seeds give streams that have nothing to do with each other.
    explicit Azar(std::uint64_t semilla) : estado_(semilla) {
        estado_ = siguiente();
        estado_ = siguiente();
    }
    std::uint64_t siguiente() {
        std::uint64_t z = estado_ += 0x9E3779B97F4A7C15U;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9U;
        z = (z ^ z >> 27) * 0x94D049BB133111EBU;
        return z ^ z >> 31;
    }
    /// From `a` to `b`, both included.
    std::int64_t entre(std::int64_t a, std::int64_t b) {
        return a + static_cast<std::int64_t>(siguiente() % static_cast<std::uint64_t>(b - a + 1));
    }
    bool uno(std::int64_t deCada) { return entre(1, deCada) == 1; }
    /// From `a` to `b`, small ones as likely as large ones: each doubling has the same chance.
    std::int64_t enEscala(std::int64_t a, std::int64_t b) {
        int octavas = 0;
        while (a << (octavas + 1) <= b)
            ++octavas;
        const std::int64_t desde = a << entre(0, octavas);
        return entre(desde, desde * 2 - 1 < b ? desde * 2 - 1 : b);
    }

  private:
    std::uint64_t estado_;
};

} // namespace kv::mundo
