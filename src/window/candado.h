// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

class QString;

namespace kv {

class Mensajero;
class Operador;

/// The lock for orders: while the setting says so, what acts on the plant is asked about first. A
/// wrong click at night is then a question, and no order.
class Candado {
  public:
    /// Both must outlive it.
    Candado(const Operador& operador, Mensajero& mensajero)
        : operador_(operador), mensajero_(mensajero) {}
    /// `que` is what is to be done: "Escribir 5 en 1.1.10". `hacer` is called at once, or on Yes.
    void pedir(const QString& que, std::function<void()> hacer);

  private:
    const Operador& operador_;
    Mensajero& mensajero_;
};

} // namespace kv
