// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/controls/ventana_al_dia.h"
#include "window/overview/recuento.h"

#include <QAbstractListModel>

#include <vector>

class QCheckBox;
class QLabel;
class QListView;

namespace kv {

/// The stations as tiles: all, or only those that have to be looked at.
class ModeloDeResumen final : public QAbstractListModel {
    Q_OBJECT
  public:
    ModeloDeResumen(const Recuento& recuento, const Tablas& tablas, const PorQue& porQue,
                    QObject* padre);
    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& ficha, int papel) const override;
    void soloLasQueHayQueMirar(bool solo);
    void actualizar();
    [[nodiscard]] const EstacionContada& de(int ficha) const {
        return recuento_.estaciones()[visibles_[static_cast<std::size_t>(ficha)]];
    }
    [[nodiscard]] QString direccion(int ficha) const;
    /// "10.0.0.1:502"
    [[nodiscard]] QString lugar(int ficha) const;
    [[nodiscard]] const PorQue& porQue() const { return porQue_; }

  private:
    const Recuento& recuento_;
    const Tablas& tablas_;
    const PorQue& porQue_;
    bool solo_ = false;
    std::vector<std::size_t> visibles_; ///< places in the count
};

/// A tile for each station: how many of its variables are OK, old and BAD. A click shows them in
/// the lists of the main window.
class VentanaDeResumen final : public VentanaAlDia {
    Q_OBJECT
  public:
    VentanaDeResumen(const Recuento& recuento, const Tablas& tablas, const PorQue& porQue,
                     QWidget* padre);
    void refrescar() override;

  signals:
    void elegida(quint32 conexion, quint32 estacion);

  private:
    const Recuento& recuento_;
    ModeloDeResumen* modelo_;
    QListView* fichas_;
    QCheckBox* solo_;
    QLabel* total_;
};

} // namespace kv
