// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/reloj.h"

#include <string>

namespace kv {

/// The time stamp of traces and lists ("HH:mm:ss DD-MM-YYYY"), formatted once per second: there are
/// several stamps in every exchange with a station.
class Sello {
  public:
    explicit Sello(const Reloj& reloj) : reloj_(reloj) {}
    /// Valid until the next call.
    [[nodiscard]] const std::string& ahora() {
        FechaHora f = reloj_.ahora();
        f.milisegundo = 0;
        if (f != ultima_ || texto_.empty()) {
            ultima_ = f;
            texto_ = formatoDeSello(f);
        }
        return texto_;
    }

    [[nodiscard]] const Reloj& reloj() const { return reloj_; }

  private:
    const Reloj& reloj_;
    FechaHora ultima_;
    std::string texto_;
};

} // namespace kv
