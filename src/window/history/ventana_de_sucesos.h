// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/controls/ventana_al_dia.h"
#include "window/history/modelo_de_sucesos.h"

class QCheckBox;
class QLineEdit;
class QTableView;

namespace kv {

/// What happened, the latest first: filtered, acknowledged, copied, exported.
class VentanaDeSucesos final : public VentanaAlDia {
    Q_OBJECT
  public:
    VentanaDeSucesos(LibroDeSucesos& libro, const Tablas& tablas, QWidget* padre);
    void refrescar() override;

  signals:
    /// A line was double-clicked: its block, or its connection; kNinguno for what it has not.
    void irA(quint32 bloque, quint32 conexion);
    void guardar(const QString& ruta, const QString& texto);
    void reconocidos();

  private:
    QWidget* armarFiltro();
    QTableView* armarTabla();
    QWidget* armarBotones();
    void filtrar();
    void reconocer();
    void copiar();
    void exportar();
    [[nodiscard]] QList<int> elegidas() const;

    LibroDeSucesos& libro_;
    ModeloDeSucesos* modelo_;
    QLineEdit* filtro_;
    QCheckBox* graves_;
    QCheckBox* sinReconocer_;
    QTableView* tabla_;
};

} // namespace kv
