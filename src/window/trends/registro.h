// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "view/lista.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace kv {

/// From then on, until the next one, a variable was so.
struct Muestra {
    std::int64_t ms; ///< on the clock that never goes back
    double valor;    ///< the last good one
    bool ok;
};

/// What a variable has been, as far as it is kept.
struct Serie {
    std::string direccion;
    std::uint32_t fila; ///< of the variables list
    std::deque<Muestra> muestras;

    /// How it was at an instant; nothing from before its first sample.
    [[nodiscard]] std::optional<Muestra> en(std::int64_t ms) const;
};

/// The past of a few chosen variables, in memory. They are looked at twice a second and noted when
/// they are otherwise than before: two hours of one that is always otherwise, four of any.
class RegistroDeTendencias {
  public:
    static constexpr std::size_t kSeries = 8;
    static constexpr std::size_t kMuestras = 16'384;         ///< of a series
    static constexpr std::int64_t kVidaMs = 4 * 3'600'000LL; ///< and no longer
    static constexpr int kCadaMs = 500;

    /// `variables` must outlive this.
    explicit RegistroDeTendencias(const Lista& variables) : variables_(variables) {}

    /// From now on this row is looked at. False when there are as many as there may be, or no such
    /// row; true also for one that is there already.
    [[nodiscard]] bool agregar(std::uint32_t fila, std::int64_t ahoraMs);
    void quitar(std::size_t serie);
    void mirar(std::int64_t ahoraMs);
    [[nodiscard]] const std::vector<Serie>& series() const { return series_; }

  private:
    void mirar(Serie& serie, std::int64_t ahoraMs) const;

    const Lista& variables_;
    std::vector<Serie> series_;
};

} // namespace kv
