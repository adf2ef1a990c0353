// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

/// A set of positions 0, 1, 2, ... that finds the next member from any position on in a time that
/// hardly depends on how many positions there are: a connection may have tens of thousands of
/// blocks, and one of them is chosen after every answer. Most have few, which take no room of their
/// own.
class ConjuntoDePosiciones {
  public:
    static constexpr std::size_t kNinguna = static_cast<std::size_t>(-1);

    void poner(std::size_t posicion, bool dentro) {
        const std::size_t p = posicion / 64;
        if (p > otras_.size()) {
            if (!dentro) return;
            otras_.resize(p);
            resumen_.resize(p / 64 + 1);
        }
        std::uint64_t& palabra = p == 0 ? primeras_ : otras_[p - 1];
        const std::uint64_t bit = std::uint64_t{1} << posicion % 64;
        palabra = dentro ? palabra | bit : palabra & ~bit;
        if (p == 0) return;
        const std::uint64_t bitDePalabra = std::uint64_t{1} << p % 64;
        std::uint64_t& r = resumen_[p / 64];
        r = palabra != 0 ? r | bitDePalabra : r & ~bitDePalabra;
    }
    /// First member at or after `desde`, or kNinguna.
    [[nodiscard]] std::size_t siguiente(std::size_t desde) const {
        std::size_t p = desde / 64;
        if (p > otras_.size()) return kNinguna;
        const std::uint64_t resto = (p == 0 ? primeras_ : otras_[p - 1]) >> desde % 64;
        if (resto != 0) return desde + static_cast<std::size_t>(std::countr_zero(resto));
        for (std::size_t r = ++p / 64; r < resumen_.size(); ++r, p = r * 64) {
            const std::uint64_t palabras = resumen_[r] >> p % 64 << p % 64;
            if (palabras == 0) continue;
            const auto q = r * 64 + static_cast<std::size_t>(std::countr_zero(palabras));
            return q * 64 + static_cast<std::size_t>(std::countr_zero(otras_[q - 1]));
        }
        return kNinguna;
    }
    /// First member after `desde` going round, `desde` itself last; kNinguna when the set is empty.
    [[nodiscard]] std::size_t siguienteEnRonda(std::size_t desde) const {
        const std::size_t despues = siguiente(desde + 1);
        return despues != kNinguna ? despues : siguiente(0);
    }

  private:
    std::uint64_t primeras_ = 0;         ///< the word of 0 to 63
    std::vector<std::uint64_t> otras_;   ///< those of 64 and up
    std::vector<std::uint64_t> resumen_; ///< a bit for each of them that is not zero
};

} // namespace kv
