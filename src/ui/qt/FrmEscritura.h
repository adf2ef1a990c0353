#pragma once

#include "ui/commands/escritura_manual.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLayout;
class QLineEdit;

namespace kv {

/// The manual write dialog: a register's address, its value as a number and as sixteen bits. Not
/// modal; deletes itself when it is closed.
class FrmEscritura final : public QDialog {
    Q_OBJECT
  public:
    /// `orden` must outlive the dialog.
    FrmEscritura(OrdenDeEscribir& orden, QWidget* padre);

    /// Fills the dialog for a register and brings it to the front.
    void mostrarPara(const QString& puerto, const QString& plc, const QString& direccion,
                     double valor);
    void recibirValorMW(double valor);
    /// Brings the check boxes and `LblBinario` in line with `TxtValor`.
    void actualizarChecks();

  private:
    [[nodiscard]] QLineEdit* caja(const char* nombre, const QString& rotulo, QFormLayout& donde);
    [[nodiscard]] QLayout* bits();
    [[nodiscard]] QLayout* botones();
    void BtnOk();

    OrdenDeEscribir& orden_;
    EscrituraManual escritura_;
    QLineEdit* txtPuerto_;
    QLineEdit* TxtPlc_;
    QLineEdit* TxtDireccion_;
    QLineEdit* TxtValor_;
    QLabel* LblBinario_;
    std::array<QCheckBox*, 16> CheckBin_{};
};

} // namespace kv
