// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QStatusBar>

class QHBoxLayout;
class QLabel;
class QToolButton;

namespace kv {

/// The figures that matter, at the foot of the main window. What is wrong stands out; while nothing
/// is, nothing does. Where they have no room what is well is left out, and then words are.
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
  signals:
    void verSucesos();

  private:
    struct Cifra {
        QLabel* rotulo;
        QString entera = {};
        QString breve = {};
        bool mal = false;
    };
    Cifra cifra(const char* nombre, const QString& ayuda);
    static void poner(Cifra& cifra, const QString& entera, const QString& breve, bool mal);
    void ponerCliente(const ClienteVisto& cliente, const PorQue& porQue);
    void acomodar();

    QWidget* caja_;
    QHBoxLayout* fila_;
    Cifra respuestas_;
    Cifra variables_;
    Cifra viejas_;
    Cifra calladas_;
    Cifra conexiones_;
    Cifra supervisor_;
    Cifra guion_;
    QToolButton* sucesos_;
    Operador::Cifras ultimas_{};
};

} // namespace kv
