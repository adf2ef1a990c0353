#pragma once

#include "ui/qt/Form1.h"
#include "ui/qt/mensajero.h"
#include "ui/qt/ventana_servidor.h"

#include <functional>

namespace kv {

/// The windows that live as long as the program.
class Ventanas {
  public:
    /// All that is given must outlive the windows.
    Ventanas(Vista& vista, Operador& operador, Mensajero& mensajero,
             std::function<void()> alApagar);

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
