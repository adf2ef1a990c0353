// SPDX-License-Identifier: Apache-2.0
#include "window/traces/fichas.h"

#include "window/controls/control.h"
#include "window/traces/caja_de_traza.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QListView>
#include <QVBoxLayout>

#include <utility>

namespace kv {

ModeloDeFichas::ModeloDeFichas(const FuenteDeFichas& fuente, QObject* padre)
    : QAbstractListModel(padre), fuente_(fuente), cuantas_(static_cast<int>(fuente.cuantas())) {
    medir(0);
}

/// Of the tabs from `desde` on, only the title with the most letters is measured: there may be very
/// many, and one more every now and then.
void ModeloDeFichas::medir(int desde) {
    constexpr int kLetrasMaximas = 40;
    constexpr QSize kMargenes{18, 6};
    QString larga;
    for (int i = desde; i < cuantas_; ++i) {
        if (QString una = fuente_.titulo(static_cast<std::size_t>(i)); una.size() > larga.size())
            larga = std::move(una);
    }
    const QFontMetrics letra(QGuiApplication::font());
    const int ancho = letra.horizontalAdvance(larga.left(kLetrasMaximas));
    medida_ = medida_.expandedTo(QSize(ancho, letra.height()) + kMargenes);
}

int ModeloDeFichas::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : cuantas_;
}

QVariant ModeloDeFichas::data(const QModelIndex& ficha, int papel) const {
    const auto i = static_cast<std::size_t>(ficha.row());
    if (!ficha.isValid() || i >= fuente_.cuantas()) return {};
    if (papel == Qt::TextAlignmentRole) return int{Qt::AlignCenter};
    if (papel == Qt::SizeHintRole) return medida_;
    if (papel != Qt::DisplayRole && papel != Qt::ToolTipRole) return {};
    return fuente_.titulo(i);
}

void ModeloDeFichas::actualizar() {
    const auto ahora = static_cast<int>(fuente_.cuantas());
    if (ahora == cuantas_) return;
    beginResetModel();
    const int antes = std::exchange(cuantas_, ahora);
    medir(antes < ahora ? antes : 0);
    endResetModel();
}

Fichas::Fichas(FuenteDeFichas fuente, const QString& titulo, QWidget* padre)
    : QWidget(padre), fuente_(std::move(fuente)), modelo_(hacer<ModeloDeFichas>(fuente_, this)),
      tira_(control<QListView>(fuente_.tira, this)),
      caja_(hacer<CajaDeTraza>(
          fuente_.cajas, titulo,
          [this]() -> std::optional<Traza> {
              const auto i = static_cast<std::size_t>(alFrente_);
              if (alFrente_ < 0 || i >= fuente_.cuantas()) return std::nullopt;
              return fuente_.traza(i);
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
    connect(modelo_, &ModeloDeFichas::modelReset, this, [this] {
        const int antes = alFrente_;
        alFrente_ = -1;
        elegir(std::min(antes, modelo_->rowCount() - 1));
    });
}

void Fichas::elegir(int ficha) {
    alFrente_ = std::min(ficha, modelo_->rowCount() - 1);
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
    if (alFrente_ < 0 && modelo_->rowCount() > 0) elegir(0);
    tira_->viewport()->update(); // titles of tabs may have changed
    caja_->refrescar();
}

} // namespace kv
