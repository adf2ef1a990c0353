// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/bucle.h"

#include <deque>

namespace kv {

/// A numbered array of timers that tick once when they are due, into one operation.
class ArregloDeTemporizadores {
  public:
    explicit ArregloDeTemporizadores(Bucle& bucle) : bucle_(bucle) {}
    /// What a tick calls, with the number of its timer. Set before the first tick.
    void alTic(std::function<void(std::size_t)> tic) { tic_ = std::move(tic); }
    /// One more timer, off, at the end.
    void agregar() {
        timers_.emplace_back(bucle_.temporizadores(),
                             AlTicar::a<&ArregloDeTemporizadores::tic>(
                                 *this, static_cast<std::uint32_t>(timers_.size())));
        timers_.back().tocarUnaVez();
    }
    void acortarA(std::size_t cuantos) {
        while (timers_.size() > cuantos)
            timers_.pop_back();
    }
    [[nodiscard]] Temporizador& operator[](std::size_t i) { return timers_[i]; }
    [[nodiscard]] const Temporizador& operator[](std::size_t i) const { return timers_[i]; }
    [[nodiscard]] std::size_t cuantos() const { return timers_.size(); }

  private:
    void tic(std::uint32_t cual) { tic_(cual); }

    Bucle& bucle_;
    std::function<void(std::size_t)> tic_;
    std::deque<Temporizador> timers_;
};

} // namespace kv
