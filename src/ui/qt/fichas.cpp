#include "ui/qt/fichas.h"

#include "ui/qt/caja_de_traza.h"
#include "ui/qt/control.h"

#include <QListView>
#include <QVBoxLayout>

namespace kv {

ModeloDeFichas::ModeloDeFichas(const CajasConFichas& cajas, QObject* padre)
    : QAbstractListModel(padre), cajas_(cajas), cuantas_(static_cast<int>(cajas.cuantas())) {}

int ModeloDeFichas::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : cuantas_;
}

QVariant ModeloDeFichas::data(const QModelIndex& ficha, int papel) const {
    const auto i = static_cast<std::size_t>(ficha.row());
    if (!ficha.isValid() || i >= cajas_.cuantas()) return {};
    if (papel == Qt::TextAlignmentRole) return int{Qt::AlignCenter};
    return papel == Qt::DisplayRole ? QVariant(enQt(cajas_.titulo(i))) : QVariant();
}

void ModeloDeFichas::actualizar() {
    const auto ahora = static_cast<int>(cajas_.cuantas());
    if (ahora == cuantas_) return;
    beginResetModel();
    cuantas_ = ahora;
    endResetModel();
}

Fichas::Fichas(const CajasConFichas& cajas, const QString& titulo, QWidget* padre)
    : QWidget(padre), cajas_(cajas), modelo_(hacer<ModeloDeFichas>(cajas, this)),
      tira_(control<QListView>(std::string(cajas.fichas()).c_str(), this)),
      caja_(hacer<CajaDeTraza>(
          std::string(cajas.nombre()).c_str(), titulo,
          [this]() -> const CajaDeTexto* {
              const auto i = static_cast<std::size_t>(alFrente_);
              return alFrente_ >= 0 && i < cajas_.cuantas() ? &cajas_[i] : nullptr;
          },
          this)) {
    tira_->setModel(modelo_);
    tira_->setFlow(QListView::LeftToRight);
    tira_->setWrapping(false);
    tira_->setUniformItemSizes(true);
    tira_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tira_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    tira_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tira_->setFixedHeight(fontMetrics().height() + 28);
    tira_->setAccessibleName(titulo);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(0, 0, 0, 0);
    todo->setSpacing(2);
    todo->addWidget(tira_);
    todo->addWidget(caja_);
    connect(caja_, &CajaDeTraza::guardar, this, &Fichas::guardar);
    connect(tira_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& ficha) {
                if (ficha.isValid()) elegir(ficha.row());
            });
    // A click on the spare tab leaves it selected after it has changed what is current.
    connect(tira_, &QListView::pressed, this, [this] { elegir(alFrente_); });
    connect(modelo_, &ModeloDeFichas::modelReset, this, [this] {
        const int antes = alFrente_;
        alFrente_ = -1;
        elegir(std::min(antes, modelo_->rowCount() - 1));
    });
}

void Fichas::elegir(int ficha) {
    const int ultima = modelo_->rowCount() - 1;
    alFrente_ = ficha < ultima ? ficha : ultima - 1;
    if (alFrente_ >= 0) {
        tira_->setCurrentIndex(modelo_->index(alFrente_));
    } else {
        tira_->clearSelection();
        tira_->setCurrentIndex({});
    }
    caja_->refrescar();
}

void Fichas::refrescar() {
    if (!isVisible()) return;
    modelo_->actualizar();
    if (alFrente_ < 0 && modelo_->rowCount() > 1) elegir(0);
    tira_->viewport()->update(); // titles of tabs may have changed
    caja_->refrescar();
}

} // namespace kv
