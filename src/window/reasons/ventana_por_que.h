// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/porque.h"
#include "window/controls/ventana_al_dia.h"

#include <array>

class QGridLayout;
class QLabel;

namespace kv {

/// Why a variable is as it is: what its block, its station and its connection say, each in one
/// sentence that is true now. Follows the row that is chosen in the lists.
class VentanaPorQue final : public VentanaAlDia {
    Q_OBJECT
  public:
    VentanaPorQue(const Tablas& tablas, const PorQue& porQue, QWidget* padre);
    void mostrarPara(Indice bloque);
    void refrescar() override;

  signals:
    void verConexion(quint32 conexion);

  private:
    QLabel* renglon(const char* nombre, const QString& titulo, QGridLayout& donde);
    void copiar();

    const Tablas& tablas_;
    const PorQue& porQue_;
    Indice bloque_ = kNinguno;
    QLabel* titulo_;
    std::array<QLabel*, 4> frases_{}; ///< variable, block, station, connection
};

} // namespace kv
