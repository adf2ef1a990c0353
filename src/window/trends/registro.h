// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "view/lista.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
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
    std::size_t hastaApretar = 0; ///< so many samples are looked through next

    /// How it was at an instant; nothing from before its first sample.
    [[nodiscard]] std::optional<Muestra> en(std::int64_t ms) const;
};

/// The past of a few chosen variables, in memory: each of their changes, as it happens. They are
/// kept for four hours, however fast they come: of what falls on one pixel of any drawing, which is
/// coarser the older it is, the first, the last, the lowest, the highest and the first that is BAD
/// are kept. That is 27,000 samples of 24 bytes at most for each variable, and half as many again
/// before they are looked through; one change in half a second is kept whole for an hour.
class RegistroDeTendencias final : private OyenteDeFilas {
  public:
    static constexpr std::size_t kSeries = 8;
    static constexpr std::int64_t kVidaMs = 4 * 3'600'000LL; ///< and no longer
    static constexpr int kCadaMs = 500;                      ///< for `mirar`
    static constexpr int kPixeles = 2'000;                   ///< of the widest drawing

    using Reloj = std::function<std::int64_t()>; ///< ms on the clock that never goes back
    /// `variables` must outlive this.
    RegistroDeTendencias(Lista& variables, Reloj reloj);
    ~RegistroDeTendencias() override;
    RegistroDeTendencias(const RegistroDeTendencias&) = delete;
    RegistroDeTendencias& operator=(const RegistroDeTendencias&) = delete;

    /// From now on this row is looked at. False when there are as many as there may be, or no such
    /// row; true also for one that is there already.
    [[nodiscard]] bool agregar(std::uint32_t fila);
    void quitar(std::size_t serie);
    /// Finds rows that went and came again elsewhere; forgets what is too old.
    void mirar();
    [[nodiscard]] const std::vector<Serie>& series() const { return series_; }

  private:
    void alCambiarFila(std::uint32_t fila) override;
    void mirar(Serie& serie);
    void anotar(Serie& serie, const Muestra& muestra) const;
    void apretar(Serie& serie, std::int64_t ahoraMs) const;

    Lista& variables_;
    Reloj reloj_;
    std::vector<Serie> series_;
};

/// What can be chosen to be drawn, in minutes.
inline constexpr std::array<int, 5> kMinutosDeTendencias = {5, 15, 60, 120, 240};

} // namespace kv
