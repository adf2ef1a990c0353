// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/escritura_manual.h"

#include <QDialog>
#include <QTimer>

#include <array>
#include <functional>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

namespace kv {

/// The manual write dialog: a register's address, what it is now, and the value to be written as a
/// number and as sixteen bits; or the same for one bit. Not modal; deletes itself when it is
/// closed.
class FrmEscritura final : public QDialog {
    Q_OBJECT
  public:
    /// `orden` must outlive the dialog.
    FrmEscritura(OrdenDeEscribir& orden, QWidget* padre);

    /// Fills the dialog for a register, or for the bit that `direccion` names, and brings it to the
    /// front.
    void mostrarPara(const QString& puerto, const QString& plc, const QString& direccion,
                     double valor);
    void recibirValorMW(double valor);
    /// OK asks through this: what is to be done, and what does it. Empty: OK writes without asking.
    using Confirmar = std::function<void(const QString& que, const std::function<void()>& hacer)>;
    void confirmarCon(Confirmar confirmar) { confirmar_ = std::move(confirmar); }
    /// Brings the check boxes, `LblBinario` and what OK may do in line with `TxtValor`.
    void actualizarChecks();

  private:
    [[nodiscard]] QLineEdit* caja(const char* nombre, const QString& rotulo, QFormLayout& donde);
    [[nodiscard]] QLayout* bits();
    [[nodiscard]] QLayout* botones();
    void leerDireccion();
    void mirar();
    void BtnOk();
    void escribir();

    OrdenDeEscribir& orden_;
    EscrituraManual escritura_;
    QLineEdit* txtPuerto_;
    QLineEdit* TxtPlc_;
    QLineEdit* TxtDireccion_;
    QLineEdit* TxtValor_;
    QLabel* LblAhora_;
    QLabel* LblExceso_;
    QLabel* LblBinario_;
    QPushButton* BtnOk_ = nullptr;
    std::array<QCheckBox*, 16> CheckBin_{};
    QTimer mirada_;
    Confirmar confirmar_;
};

} // namespace kv
