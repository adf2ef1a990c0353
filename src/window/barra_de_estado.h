// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace kv {

/// The figures that matter, at the foot of the main window. What is wrong stands out; while nothing
/// is, nothing does.
class BarraDeEstado final : public QStatusBar {
    Q_OBJECT
  public:
    explicit BarraDeEstado(QWidget* padre);
    struct Cuentas {
        std::size_t bad; ///< rows of the variables
        std::size_t variables;
        std::size_t viejas;
        std::size_t calladas; ///< stations
        std::size_t conectadas;
        std::size_t conexiones;
        std::size_t sinReconocer; ///< events
        const ClienteVisto& cliente;
        Color guion;
    };
    void refrescar(const Operador::Cifras& cifras, const Cuentas& cuentas, const PorQue& porQue);
    /// In a small window only what is wrong has room, and whom the operator looks for.
    void compactar(bool compacta);

  signals:
    void verSucesos();

  private:
    QLabel* cifra(const char* nombre, const QString& ayuda);
    void poner(QLabel& donde, const QString& texto, bool mal) const;
    void ponerCliente(const ClienteVisto& cliente, const PorQue& porQue);

    QLabel* respuestas_;
    QLabel* variables_;
    QLabel* viejas_;
    QLabel* calladas_;
    QLabel* conexiones_;
    QLabel* supervisor_;
    QLabel* guion_;
    QToolButton* sucesos_;
    Operador::Cifras ultimas_{};
    bool compacta_ = false;
};

} // namespace kv
