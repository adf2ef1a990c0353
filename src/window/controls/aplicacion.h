// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace kv {

/// Whether windows can be shown here. The toolkit ends a process that has no screen, so it is tried
/// in a child; call before anything else has been started.
[[nodiscard]] bool hayPantalla();

/// The toolkit's own loop, which is the outer one where there are windows: the driver's loop is
/// inside it, in one thread. One per process, made before any window.
class Aplicacion {
  public:
    /// Called for an exception that a handler of a window let out: with the control, and what it
    /// says.
    using AlFallar = std::function<void(const std::string& control, const char* que)>;
    /// `atender` is called before every sleep of the toolkit's loop, which `descriptor` wakes.
    Aplicacion(int descriptor, std::function<void()> atender, AlFallar alFallar);
    ~Aplicacion();
    Aplicacion(const Aplicacion&) = delete;
    Aplicacion& operator=(const Aplicacion&) = delete;

    /// Until `terminar`, also one that came before.
    void correr();
    /// Ends `correr` without asking the windows, of which the main one would refuse.
    static void terminar();

  private:
    struct Interior;
    std::unique_ptr<Interior> interior_;
};

} // namespace kv
