// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/suceso.h"

#include <cstddef>
#include <cstdint>
#include <deque>

namespace kv {

/// Sorts of events that have a trace box of their own, which a busy plant's traffic would push out
/// of the ring long before the box is full.
enum class Apartado : std::uint8_t {
    Descartes,
    Ordenes,          ///< what window, script and client asked for, and how writes ended
    PasosDeEscritura, ///< frames and time-outs of writes
    AlCliente,
    DelCliente,
    Ninguno
};
inline constexpr std::size_t kApartados = static_cast<std::size_t>(Apartado::Ninguno);

[[nodiscard]] Apartado apartadoDe(Que que);

/// The latest events of one sort that have gone out of the ring.
class Apartados {
  public:
    /// Enough for the 40,000 characters of a box: the shortest lines have ten.
    static constexpr std::size_t kMaximo = 4096;
    struct Uno {
        std::uint64_t numero; ///< see Sucesos
        Suceso suceso;
    };

    /// Numbers grow.
    void guardar(std::uint64_t numero, const Suceso& suceso);
    /// Oldest first.
    [[nodiscard]] const std::deque<Uno>& todos() const { return todos_; }
    /// Of the events with this number and later ones none has been thrown away.
    [[nodiscard]] std::uint64_t completosDesde() const { return completosDesde_; }

  private:
    std::deque<Uno> todos_;
    std::uint64_t completosDesde_ = 0;
};

} // namespace kv
