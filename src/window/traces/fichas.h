// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/trazas.h"

#include <QAbstractListModel>
#include <QSize>
#include <QWidget>

#include <functional>

class QListView;

namespace kv {

class CajaDeTraza;

/// Where a tab strip and the trace boxes behind it come from.
struct FuenteDeFichas {
    const char* cajas; ///< name of the control that shows the box in front
    const char* tira;
    std::function<std::size_t()> cuantas;
    std::function<QString(std::size_t)> titulo;
    std::function<Traza(std::size_t)> traza;
};

/// The tabs of a tab strip: there may be a hundred thousand, so they are not widgets. All of them
/// are as wide as the longest title needs.
class ModeloDeFichas final : public QAbstractListModel {
    Q_OBJECT
  public:
    ModeloDeFichas(const FuenteDeFichas& fuente, QObject* padre);
    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& ficha, int papel) const override;
    /// Takes over tabs that came or went.
    void actualizar();

  private:
    void medir(int desde);

    const FuenteDeFichas& fuente_;
    int cuantas_;
    QSize medida_;
};

/// A tab strip with the trace boxes that it chooses among, one of which is in front.
class Fichas final : public QWidget {
    Q_OBJECT
  public:
    Fichas(FuenteDeFichas fuente, const QString& titulo, QWidget* padre);
    void refrescar();
    /// Number of the box in front, -1 when no box is to be seen.
    [[nodiscard]] int alFrente() const { return alFrente_; }

  signals:
    void guardar(const QString& ruta, const QString& texto);

  private:
    void elegir(int ficha);

    FuenteDeFichas fuente_;
    ModeloDeFichas* modelo_;
    QListView* tira_;
    CajaDeTraza* caja_;
    int alFrente_ = -1;
};

} // namespace kv
