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

class Candado;

/// The commands of the main window: search, test writes, forced reads. A click is one call.
class PanelDeOrdenes final : public QWidget {
    Q_OBJECT
  public:
    /// All must outlive the panel.
    PanelDeOrdenes(Operador& operador, const Vista& vista, Candado& candado, QWidget* padre);
    void refrescar();
    /// Puts the cursor into the box of the exact search.
    void irABuscar();

  signals:
    /// A variable was searched for and found.
    void hallada(quint32 fila);
    void avisar(const kv::Aviso& aviso);
    /// A reading of this address was asked for.
    void forzada(const QString& direccion);

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
    void btnForzarLectura();
    void btnEscribirValor();
    void btnForzarPorNivel();

    static constexpr int kPares = 4;
    Operador& operador_;
    Candado& candado_;
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
