#pragma once

#include "ui/view/vista.h"

#include <QAbstractListModel>
#include <QWidget>

class QListView;

namespace kv {

class CajaDeTraza;

/// The tabs of a tab strip: there may be a hundred thousand, so they are not widgets.
class ModeloDeFichas final : public QAbstractListModel {
    Q_OBJECT
  public:
    ModeloDeFichas(const CajasConFichas& cajas, QObject* padre);
    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& ficha, int papel) const override;
    /// Takes over tabs that came or went.
    void actualizar();

  private:
    const CajasConFichas& cajas_;
    int cuantas_;
};

/// A tab strip with the trace boxes that it chooses among, one of which is in front. The last tab
/// is the spare one: it is never left selected, the one before it is.
class Fichas final : public QWidget {
    Q_OBJECT
  public:
    Fichas(const CajasConFichas& cajas, const QString& titulo, QWidget* padre);
    void refrescar();
    /// Number of the box in front, -1 when there is none to be seen.
    [[nodiscard]] int alFrente() const { return alFrente_; }

  signals:
    void guardar(const QString& ruta, const QString& texto);

  private:
    void elegir(int ficha);

    const CajasConFichas& cajas_;
    ModeloDeFichas* modelo_;
    QListView* tira_;
    CajaDeTraza* caja_;
    int alFrente_ = -1;
};

} // namespace kv
