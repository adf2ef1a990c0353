// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

/// A set of positions 0, 1, 2, ... that finds the next member from any position on in a time that
/// hardly depends on how many positions there are: a connection may have tens of thousands of
/// blocks, and one of them is chosen after every answer.
class ConjuntoDePosiciones {
  public:
    static constexpr std::size_t kNinguna = static_cast<std::size_t>(-1);

    void poner(std::size_t posicion, bool dentro) {
        const std::size_t p = posicion / 64;
        if (p >= palabras_.size()) {
            if (!dentro) return;
            palabras_.resize(p + 1);
            resumen_.resize(p / 64 + 1);
        }
        const std::uint64_t bit = std::uint64_t{1} << posicion % 64;
        palabras_[p] = dentro ? palabras_[p] | bit : palabras_[p] & ~bit;
        const std::uint64_t bitDePalabra = std::uint64_t{1} << p % 64;
        std::uint64_t& r = resumen_[p / 64];
        r = palabras_[p] != 0 ? r | bitDePalabra : r & ~bitDePalabra;
    }
    /// First member at or after `desde`, or kNinguna.
    [[nodiscard]] std::size_t siguiente(std::size_t desde) const {
        std::size_t p = desde / 64;
        if (p >= palabras_.size()) return kNinguna;
        const std::uint64_t resto = palabras_[p] >> desde % 64;
        if (resto != 0) return desde + static_cast<std::size_t>(std::countr_zero(resto));
        for (std::size_t r = ++p / 64; r < resumen_.size(); ++r, p = r * 64) {
            const std::uint64_t palabras = resumen_[r] >> p % 64 << p % 64;
            if (palabras == 0) continue;
            const auto q = r * 64 + static_cast<std::size_t>(std::countr_zero(palabras));
            return q * 64 + static_cast<std::size_t>(std::countr_zero(palabras_[q]));
        }
        return kNinguna;
    }
    /// First member after `desde` going round, `desde` itself last; kNinguna when the set is empty.
    [[nodiscard]] std::size_t siguienteEnRonda(std::size_t desde) const {
        const std::size_t despues = siguiente(desde + 1);
        return despues != kNinguna ? despues : siguiente(0);
    }

  private:
    std::vector<std::uint64_t> palabras_;
    std::vector<std::uint64_t> resumen_; ///< a bit for each word that is not zero
};

} // namespace kv
