// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/Form1.h"
#include "window/mensajero.h"
#include "window/ventana_servidor.h"

namespace kv {

/// The windows that live as long as the program.
class Ventanas {
  public:
    explicit Ventanas(const PartesDeVentana& partes);

    /// Shows and hides what the view says. Costs nothing when that is so already.
    void mirarVisibilidad();
    [[nodiscard]] Form1& principal() { return form1_; }
    [[nodiscard]] VentanaServidor& servidor() { return servidor_; }

  private:
    Vista& vista_;
    Form1 form1_;
    VentanaServidor servidor_;
};

} // namespace kv
