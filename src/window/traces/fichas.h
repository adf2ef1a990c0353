#pragma once

#include "view/vista.h"

#include <QAbstractListModel>
#include <QSize>
#include <QWidget>

#include <functional>

class QListView;

namespace kv {

class CajaDeTraza;

/// The title of a tab on the screen.
using TituloDeFicha = std::function<QString(std::size_t ficha)>;

/// The tabs of a tab strip: there may be a hundred thousand, so they are not widgets. All of them
/// are as wide as the longest title needs.
class ModeloDeFichas final : public QAbstractListModel {
    Q_OBJECT
  public:
    ModeloDeFichas(const CajasConFichas& cajas, TituloDeFicha titulo, QObject* padre);
    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& ficha, int papel) const override;
    /// Takes over tabs that came or went.
    void actualizar();

  private:
    void medir(int desde);

    const CajasConFichas& cajas_;
    TituloDeFicha titulo_;
    int cuantas_;
    QSize medida_;
};

/// A tab strip with the trace boxes that it chooses among, one of which is in front. The last tab
/// is the spare one: it is never left selected, the one before it is.
class Fichas final : public QWidget {
    Q_OBJECT
  public:
    Fichas(const CajasConFichas& cajas, TituloDeFicha deFicha, const QString& titulo,
           QWidget* padre);
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
