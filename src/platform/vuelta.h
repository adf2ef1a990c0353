// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace kv {

/// What a loop keeps about its turn: how deep handlers nest in it, and what is done at its end.
class Vuelta {
  public:
    /// A level of handlers for as long as it lives, whichever way they end: one that throws is
    /// caught by whoever let it run, and the loop turns on.
    class Nivel {
      public:
        explicit Nivel(Vuelta& vuelta) : vuelta_(vuelta) { ++vuelta_.niveles_; }
        ~Nivel() { --vuelta_.niveles_; }
        Nivel(const Nivel&) = delete;
        Nivel& operator=(const Nivel&) = delete;

      private:
        Vuelta& vuelta_;
    };
    [[nodiscard]] int niveles() const { return niveles_; }
    /// A handler, and one more inside its yield.
    [[nodiscard]] bool admiteOtroNivel() const { return niveles_ < 2; }

    void alFinalSiempre(std::function<void()> tarea) { siempre_.push_back(std::move(tarea)); }
    void alFinalUnaVez(std::function<void()> tarea) { unaVez_.push_back(std::move(tarea)); }
    /// Runs the tasks: those that wait for this once, then the others as they were registered. When
    /// one throws, those behind it are not lost. What tasks ask for comes next time.
    void terminar() {
        for (std::size_t n = unaVez_.size(); n > 0; --n) {
            const auto tarea = std::move(unaVez_.front());
            unaVez_.pop_front();
            tarea();
        }
        for (const auto& tarea : siempre_)
            tarea();
    }

  private:
    int niveles_ = 0;
    std::deque<std::function<void()>> unaVez_;
    std::vector<std::function<void()>> siempre_;
};

} // namespace kv
