// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QStatusBar>

class QLabel;

namespace kv {

/// The figures that matter, at the foot of the main window.
class BarraDeEstado final : public QStatusBar {
    Q_OBJECT
  public:
    explicit BarraDeEstado(QWidget* padre);
    struct Cuentas {
        std::size_t variablesMal;
        std::size_t variables;
        std::size_t conectadas;
        std::size_t conexiones;
    };
    void refrescar(const Operador::Cifras& cifras, const Cuentas& cuentas);

  private:
    QLabel* cifra(const char* nombre, const QString& ayuda);

    QLabel* respuestas_;
    QLabel* variables_;
    QLabel* conexiones_;
    Operador::Cifras ultimas_{};
};

} // namespace kv
