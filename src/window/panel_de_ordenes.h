// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QWidget>

#include <vector>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kv {

/// The commands of the main window: search, test writes, forced reads. A click is one call.
class PanelDeOrdenes final : public QWidget {
    Q_OBJECT
  public:
    PanelDeOrdenes(Operador& operador, const Vista& vista, QWidget* padre);
    void refrescar();
    /// Puts the cursor into the box of the exact search.
    void irABuscar();

  signals:
    /// A variable was searched for and found.
    void hallada(quint32 fila);
    void avisar(const kv::Aviso& aviso);

  private:
    QGroupBox* armarBusqueda();
    QGroupBox* armarPrueba();
    QGroupBox* armarNivel();
    QGroupBox* armarPares();
    QLineEdit* caja(const char* nombre, const QString& titulo);
    /// A button that calls `orden`.
    template <class Orden>
    QPushButton* boton(const char* nombre, const QString& texto, Orden orden);
    void BtnBuscarDireccion();
    void BtnEscribirOtraDireccion();
    void BtnEscribirOtroValor();
    void BtnEnviar();

    static constexpr int kPares = 4;
    Operador& operador_;
    const Vista& vista_;
    QLineEdit* txtBuscarDireccion_;
    QLabel* lblResultadoBusqueda_;
    QLineEdit* TxtDireccion_;
    QLineEdit* txtValorDeEscritura_;
    QLineEdit* txtForzarNivel_;
    QLineEdit* txtForzarNivelNVeces_;
    std::vector<QLineEdit*> txtDirDePruebas_;
    std::vector<QLineEdit*> txtValoresDePruebas_;
};

} // namespace kv
