// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"

#include <QWidget>

#include <array>

class QGridLayout;
class QLabel;
class QTimer;

namespace kv {

/// Why a variable is as it is: what its block, its station and its connection say, each in one
/// sentence that is true now. Follows the row that is chosen in the lists.
class VentanaPorQue final : public QWidget {
    Q_OBJECT
  public:
    VentanaPorQue(const Tablas& tablas, const PorQue& porQue, QWidget* padre);
    void mostrarPara(Indice bloque);
    void refrescar();

  signals:
    void verConexion(quint32 conexion);

  protected:
    void showEvent(QShowEvent* suceso) override;
    void hideEvent(QHideEvent* suceso) override;

  private:
    QLabel* renglon(const char* nombre, const QString& titulo, QGridLayout& donde);
    void copiar();

    const Tablas& tablas_;
    const PorQue& porQue_;
    Indice bloque_ = kNinguno;
    QLabel* titulo_;
    std::array<QLabel*, 4> frases_{}; ///< variable, block, station, connection
    QTimer* ritmo_;
};

} // namespace kv
