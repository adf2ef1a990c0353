// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"
#include "window/controls/ventana_al_dia.h"

#include <QAbstractTableModel>

class QFormLayout;
class QLabel;
class QTableView;

namespace kv {

class BarraDeReparto;

/// What has been counted of the stations of a connection; asked for when it is painted.
class ModeloDeEstaciones final : public QAbstractTableModel {
    Q_OBJECT
  public:
    ModeloDeEstaciones(const Tablas& tablas, const Operador& operador, QObject* padre);
    void ponerConexion(Indice conexion);
    /// Takes up the stations that the connection has now.
    void seguir();
    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& celda, int papel) const override;
    [[nodiscard]] QVariant headerData(int columna, Qt::Orientation orientacion,
                                      int papel) const override;

  private:
    const Tablas& tablas_;
    const Operador& operador_;
    Indice conexion_ = kNinguno;
    std::vector<Indice> filas_; ///< stations of the connection
};

/// A connection and its figures since the start: how its stations answer, what goes wrong, what its
/// line is busy with, and which scans it cannot keep.
class VentanaDeConexion final : public VentanaAlDia {
    Q_OBJECT
  public:
    VentanaDeConexion(const Tablas& tablas, const Operador& operador, QWidget* padre);
    void mostrarPara(Indice conexion);
    void refrescar() override;

  private:
    QLabel* cifra(const char* nombre, const QString& titulo, QFormLayout& donde);
    [[nodiscard]] QString scansQueNoSeCumplen() const;

    const Tablas& tablas_;
    const Operador& operador_;
    Indice conexion_ = kNinguno;
    ModeloDeEstaciones* modelo_;
    QLabel* titulo_;
    QLabel* frase_;
    QLabel* ultima_ = nullptr;
    QLabel* tiempos_ = nullptr;
    QLabel* pedidos_ = nullptr;
    QLabel* vencidos_ = nullptr;
    QLabel* descartes_ = nullptr;
    QLabel* caidas_ = nullptr;
    QLabel* scans_ = nullptr;
    BarraDeReparto* reparto_;
    QTableView* estaciones_;
};

} // namespace kv
