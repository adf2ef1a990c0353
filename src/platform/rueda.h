// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

/// A ring of slots, which stand for numbers that follow one another; only a stretch of them as long
/// as the ring is in use at a time. A slot is a list of entries: putting one in touches nothing but
/// the end of its slot, and finding the next slot that is not empty costs the same however many
/// entries there are.
class Rueda {
  public:
    using Entradas = std::vector<std::uint32_t>;

    /// A power of two, 64 at least.
    explicit Rueda(std::size_t ranuras) : ranuras_(ranuras), ocupadas_(ranuras / 64) {}

    [[nodiscard]] std::int64_t ranuras() const {
        return static_cast<std::int64_t>(ranuras_.size());
    }
    void poner(std::uint32_t entrada, std::int64_t ranura);
    /// In the order in which they were put in.
    [[nodiscard]] const Entradas& operator[](std::int64_t ranura) const {
        return ranuras_[indice(ranura)];
    }
    /// The last one of a slot that is not empty goes.
    void sacarUltima(std::int64_t ranura);
    /// All of a slot, which is empty then and keeps no memory.
    [[nodiscard]] Entradas vaciar(std::int64_t ranura);
    /// The first slot of [desde, hasta) that is not empty, -1 if all are. No more slots than the
    /// ring has.
    [[nodiscard]] std::int64_t ocupada(std::int64_t desde, std::int64_t hasta) const;

  private:
    [[nodiscard]] std::size_t indice(std::int64_t ranura) const {
        return static_cast<std::size_t>(ranura) & (ranuras_.size() - 1);
    }

    std::vector<Entradas> ranuras_;
    std::vector<std::uint64_t> ocupadas_; ///< a bit for each slot
};

} // namespace kv
