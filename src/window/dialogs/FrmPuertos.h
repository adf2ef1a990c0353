// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QDialog>

class QTreeWidget;

namespace kv {

/// The ports list: the configured ports, to be looked at. They are changed in the configuration.
class FrmPuertos final : public QDialog {
    Q_OBJECT
  public:
    /// `operador` must outlive the window.
    FrmPuertos(const Operador& operador, QWidget* padre);
    /// Fills the list anew and brings the window to the front.
    void mostrarPuertos();

  private:
    const Operador& operador_;
    QTreeWidget* LstViewPuertos_;
};

} // namespace kv
