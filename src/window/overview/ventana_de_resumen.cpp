// SPDX-License-Identifier: Apache-2.0
#include "window/overview/ventana_de_resumen.h"

#include "window/controls/colores.h"
#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/lists/estado_de_fila.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace kv {
namespace {

constexpr int kMargen = 8;
constexpr int kFranja = 6; // pixels of colour at the left of a tile
constexpr int kRenglones = 3;

EstadoDeFila estadoDe(const ResumenDeEstacion& r) {
    if (r.callada || (r.bad > 0 && r.ok + r.viejas == 0)) return EstadoDeFila::Mal;
    if (r.bad > 0) return EstadoDeFila::Descansa;
    if (r.viejas > 0) return EstadoDeFila::Vieja;
    return r.ok > 0 ? EstadoDeFila::Bien : EstadoDeFila::Apagada;
}

QColor colorDe(EstadoDeFila estado, const QPalette& paleta) {
    const QColor color = colorDeEstado(estado, paleta);
    return color.isValid() ? color : QColor(0x2E, 0x9E, 0x44);
}

QString cuentas(const ResumenDeEstacion& r) {
    return VentanaDeResumen::tr("OK %1   viejas %2   BAD %3").arg(r.ok).arg(r.viejas).arg(r.bad);
}

/// Draws a tile: address and sign, where it is, how many.
class DibujoDeFicha final : public QStyledItemDelegate {
  public:
    DibujoDeFicha(const ModeloDeResumen& modelo, QObject* padre)
        : QStyledItemDelegate(padre), modelo_(modelo) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& como,
                                 const QModelIndex& /*ficha*/) const override {
        const int ancho = como.fontMetrics.horizontalAdvance("OK 10000   viejas 1000   BAD 10000");
        return {ancho + 3 * kMargen + kFranja,
                kRenglones * como.fontMetrics.lineSpacing() + 3 * kMargen};
    }

    void paint(QPainter* p, const QStyleOptionViewItem& como,
               const QModelIndex& ficha) const override {
        const ResumenDeEstacion& r = modelo_.de(ficha.row()).resumen;
        const EstadoDeFila estado = estadoDe(r);
        const QColor color = colorDe(estado, como.palette);
        const QRect todo = como.rect.adjusted(3, 3, -3, -3);
        p->save();
        // What is well stays in the background.
        const bool bien = estado == EstadoDeFila::Bien || estado == EstadoDeFila::Apagada;
        p->fillRect(todo, sobrePapel(como.palette, color, bien ? 0.06F : 0.22F));
        p->fillRect(QRect(todo.left(), todo.top(), kFranja, todo.height()), color);
        const bool tocada = (como.state & (QStyle::State_Selected | QStyle::State_HasFocus)) != 0;
        p->setPen(tocada ? QPen(como.palette.color(QPalette::Highlight), 2)
                         : QPen(sobrePapel(como.palette, color, 0.5F)));
        p->drawRect(todo.adjusted(0, 0, -1, -1));
        const int alto = como.fontMetrics.lineSpacing();
        QRect renglon(todo.left() + kFranja + kMargen, todo.top() + kMargen - 2,
                      todo.width() - kFranja - 2 * kMargen, alto);
        // On light ground of its own: a tile's is near the sign's colour.
        senalDeEstado(estado).paint(p, QRect(renglon.left(), renglon.top(), alto, alto),
                                    Qt::AlignCenter, QIcon::Selected);
        QFont negrita = como.font;
        negrita.setBold(true);
        p->setFont(negrita);
        p->setPen(como.palette.color(QPalette::Text));
        p->drawText(renglon.adjusted(alto + 4, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                    modelo_.direccion(ficha.row()));
        p->setFont(como.font);
        renglon.translate(0, alto);
        const QString donde = !r.callada      ? modelo_.lugar(ficha.row())
                              : r.desdeMs < 0 ? VentanaDeResumen::tr("sin respuesta")
                                              : VentanaDeResumen::tr("sin respuesta desde %1")
                                                    .arg(enQt(modelo_.porQue().hora(r.desdeMs)));
        p->drawText(renglon, Qt::AlignLeft | Qt::AlignVCenter,
                    como.fontMetrics.elidedText(donde, Qt::ElideRight, renglon.width()));
        renglon.translate(0, alto);
        p->drawText(renglon, Qt::AlignLeft | Qt::AlignVCenter, cuentas(r));
        p->restore();
    }

  private:
    const ModeloDeResumen& modelo_;
};

} // namespace

ModeloDeResumen::ModeloDeResumen(const Recuento& recuento, const Tablas& tablas,
                                 const PorQue& porQue, QObject* padre)
    : QAbstractListModel(padre), recuento_(recuento), tablas_(tablas), porQue_(porQue) {}

QString ModeloDeResumen::direccion(int ficha) const {
    return enQt(direccionDeEstacion(tablas_, de(ficha).conexion, de(ficha).estacion));
}

QString ModeloDeResumen::lugar(int ficha) const {
    const ConexionIP& c = tablas_.conexiones[de(ficha).conexion];
    return enQt(direccionDe(c));
}

int ModeloDeResumen::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(visibles_.size());
}

QVariant ModeloDeResumen::data(const QModelIndex& ficha, int papel) const {
    if (!ficha.isValid() || ficha.row() >= rowCount()) return {};
    const EstacionContada& c = de(ficha.row());
    switch (papel) {
    case Qt::DisplayRole: // for who hears it
        return direccion(ficha.row()) + ": " + cuentas(c.resumen);
    case Qt::ToolTipRole:
        return ayudaSinMarcas(enQt(porQue_.porQueEstacion(c.conexion, c.estacion)));
    default:
        return {};
    }
}

void ModeloDeResumen::soloLasQueHayQueMirar(bool solo) {
    solo_ = solo;
    actualizar();
}

/// Tiles stay where they are while no tile comes or goes.
void ModeloDeResumen::actualizar() {
    std::vector<std::size_t> ahora;
    for (std::size_t i = 0; i < recuento_.estaciones().size(); ++i) {
        if (!solo_ || recuento_.estaciones()[i].hayQueMirar()) ahora.push_back(i);
    }
    if (ahora == visibles_) return;
    beginResetModel();
    visibles_ = std::move(ahora);
    endResetModel();
}

VentanaDeResumen::VentanaDeResumen(const Recuento& recuento, const Tablas& tablas,
                                   const PorQue& porQue, QWidget* padre)
    : VentanaAlDia("FrmResumen", kDeLejosMs, padre), recuento_(recuento),
      modelo_(hacer<ModeloDeResumen>(recuento, tablas, porQue, this)),
      fichas_(control<QListView>("lstResumen", this)),
      solo_(control<QCheckBox>("chkSoloConProblemas", tr("&Sólo con problemas"), this)),
      total_(rotulo("lblResumen", this)) {
    setWindowTitle(tr("Resumen de estaciones"));
    fichas_->setModel(modelo_);
    fichas_->setItemDelegate(hacer<DibujoDeFicha>(*modelo_, fichas_));
    fichas_->setViewMode(QListView::IconMode);
    fichas_->setMovement(QListView::Static);
    fichas_->setResizeMode(QListView::Adjust);
    fichas_->setUniformItemSizes(true);
    fichas_->setAccessibleName(tr("Resumen de estaciones"));
    const auto elegir = [this](const QModelIndex& ficha) {
        const EstacionContada& c = modelo_->de(ficha.row());
        emit elegida(c.conexion, c.estacion);
    };
    connect(fichas_, &QListView::clicked, this, elegir);
    connect(fichas_, &QListView::activated, this, elegir); // by a key
    connect(solo_, &QCheckBox::toggled, modelo_, &ModeloDeResumen::soloLasQueHayQueMirar);
    auto* arriba = hacer<QHBoxLayout>();
    arriba->addWidget(total_, 1);
    arriba->addWidget(solo_);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addLayout(arriba);
    todo->addWidget(fichas_, 1);
    acomodar(*this, {860, 480});
    volverAlLugar(*this);
    prepararVentana(*this);
}

void VentanaDeResumen::refrescar() {
    modelo_->actualizar();
    const Recuento::Total& t = recuento_.total();
    total_->setText(tr("%1 estaciones, %2 sin respuesta; variables: %3 OK, %4 viejas, %5 BAD")
                        .arg(recuento_.estaciones().size())
                        .arg(t.calladas)
                        .arg(t.ok)
                        .arg(t.viejas)
                        .arg(t.bad));
    fichas_->viewport()->update(); // only what is in sight is drawn
}

} // namespace kv
