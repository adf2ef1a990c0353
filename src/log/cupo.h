// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>

namespace kv {

inline constexpr std::int64_t kUnSegundoMs = 1000;
inline constexpr std::int64_t kUnMinutoMs = 60'000;

/// So many in a period, which begins with the first one: for what others may cause without end. The
/// rest finds no place, and is counted.
class Cupo {
  public:
    constexpr explicit Cupo(std::int64_t periodoMs) : periodoMs_(periodoMs) {}

    /// Whether one more of at most `maximo` has its place.
    [[nodiscard]] bool tomar(std::int64_t ahoraMs, double maximo) {
        if (vencido(ahoraMs)) tomados_ = 0;
        if (tomados_ == 0) desdeMs_ = ahoraMs;
        const bool cabe = tomados_ < maximo;
        if (cabe)
            ++tomados_;
        else
            ++negados_;
        return cabe;
    }
    /// How many have found no place, and those only whose period is over.
    [[nodiscard]] std::uint64_t negados(std::int64_t ahoraMs) {
        return vencido(ahoraMs) ? negadosYa() : 0;
    }
    /// The same without waiting for the end of the period.
    [[nodiscard]] std::uint64_t negadosYa() { return std::exchange(negados_, 0); }
    [[nodiscard]] bool hayNegados() const { return negados_ > 0; }
    /// All places are free again.
    void vaciar() { tomados_ = 0; }
    /// When the period began.
    [[nodiscard]] std::int64_t desdeMs() const { return desdeMs_; }

  private:
    /// Whether the period is over, or none has begun.
    [[nodiscard]] bool vencido(std::int64_t ahoraMs) const {
        return tomados_ == 0 || ahoraMs - desdeMs_ >= periodoMs_;
    }

    std::int64_t periodoMs_;
    std::int64_t desdeMs_ = 0;
    std::uint32_t tomados_ = 0;
    std::uint64_t negados_ = 0;
};

} // namespace kv
