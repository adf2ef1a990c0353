// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

/// What stands in a Rueda: in one slot at most. Its destructor does not take it out.
struct EnRueda {
    EnRueda* anterior = nullptr;
    EnRueda* siguiente = nullptr;
    std::int64_t ranura = 0; ///< while it stands in one
};

/// A ring of slots, which stand for numbers that follow one another; only a stretch of them as long
/// as the ring is in use at a time. Putting in, taking out and finding the next slot that is not
/// empty cost the same however many stand in it. Owns nothing of what stands in it.
class Rueda {
  public:
    /// A power of two, 64 at least.
    explicit Rueda(std::size_t ranuras) : ultimos_(ranuras), ocupadas_(ranuras / 64) {}

    [[nodiscard]] std::int64_t ranuras() const {
        return static_cast<std::int64_t>(ultimos_.size());
    }
    /// Behind those that stand there.
    void poner(EnRueda& e, std::int64_t ranura);
    void sacar(EnRueda& e);
    /// The first that stands there, null if none does. The others follow, the last is followed by
    /// the first.
    [[nodiscard]] EnRueda* primero(std::int64_t ranura) const {
        const EnRueda* ultimo = ultimos_[indice(ranura)];
        return ultimo == nullptr ? nullptr : ultimo->siguiente;
    }
    /// The first slot of [desde, hasta) that is not empty, -1 if all are. No more slots than the
    /// ring has.
    [[nodiscard]] std::int64_t ocupada(std::int64_t desde, std::int64_t hasta) const;

  private:
    [[nodiscard]] std::size_t indice(std::int64_t ranura) const {
        return static_cast<std::size_t>(ranura) & (ultimos_.size() - 1);
    }

    std::vector<EnRueda*> ultimos_;
    std::vector<std::uint64_t> ocupadas_; ///< a bit for each slot
};

} // namespace kv
