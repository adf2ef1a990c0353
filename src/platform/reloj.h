// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/fecha.h"

#include <cstdint>

namespace kv {

/// The two clocks: one that only counts forward, for every interval, and the calendar clock of the
/// wall, which may jump and is used for nothing but stamps, file names and the client's password.
class Reloj {
  public:
    virtual ~Reloj() = default;
    /// Microseconds since some moment of the past; never goes back.
    [[nodiscard]] virtual std::int64_t monotonicoUs() const = 0;
    /// Local calendar time.
    [[nodiscard]] virtual FechaHora ahora() const = 0;
    /// The same as one number, see empaquetar.
    [[nodiscard]] virtual std::int64_t instante() const { return empaquetar(ahora()); }

    [[nodiscard]] std::int64_t monotonicoMs() const { return monotonicoUs() / 1000; }
};

} // namespace kv
