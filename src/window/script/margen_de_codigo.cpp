// SPDX-License-Identifier: Apache-2.0
#include "window/script/margen_de_codigo.h"

#include "window/controls/colores.h"
#include "window/controls/ventana.h"
#include "window/script/caja_de_codigo.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextBlock>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <set>

namespace kv {
namespace {

constexpr int kAire = 4;
constexpr int kCifrasMinimas = 3;

/// A cross in a disc: the line that stopped a run.
void cruz(QPainter& p, const QRectF& donde) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xC62828));
    p.drawEllipse(donde);
    p.setPen(QPen(Qt::white, donde.width() / 7));
    const QRectF d = donde.adjusted(donde.width() * 0.3, donde.width() * 0.3, -donde.width() * 0.3,
                                    -donde.width() * 0.3);
    p.drawLine(d.topLeft(), d.bottomRight());
    p.drawLine(d.topRight(), d.bottomLeft());
}

/// A triangle: the line that would not compile.
void triangulo(QPainter& p, const QRectF& donde) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xF9A825));
    p.drawPolygon(QPolygonF{QPointF(donde.center().x(), donde.top()), donde.bottomRight(),
                            donde.bottomLeft()});
    p.setPen(QPen(Qt::black, donde.width() / 8));
    const qreal x = donde.center().x();
    p.drawLine(QPointF(x, donde.top() + donde.height() * 0.38),
               QPointF(x, donde.top() + donde.height() * 0.66));
    p.drawPoint(QPointF(x, donde.top() + donde.height() * 0.84));
}

/// A lozenge: the line that compiles and is hardly meant.
void rombo(QPainter& p, const QRectF& donde) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xE65100));
    const QRectF d = donde.adjusted(donde.width() * 0.2, donde.width() * 0.2, -donde.width() * 0.2,
                                    -donde.width() * 0.2);
    p.drawPolygon(QPolygonF{QPointF(d.center().x(), d.top()), QPointF(d.right(), d.center().y()),
                            QPointF(d.center().x(), d.bottom()),
                            QPointF(d.left(), d.center().y())});
}

} // namespace

MargenDeCodigo::MargenDeCodigo(CajaDeCodigo& caja) : QWidget(&caja), caja_(caja) {}

int MargenDeCodigo::ancho() const {
    const int cifras =
        std::max(kCifrasMinimas, static_cast<int>(std::log10(caja_.blockCount())) + 1);
    const QFontMetrics m(caja_.font());
    return m.height() + kAire + cifras * m.horizontalAdvance('9') + 2 * kAire;
}

template <class F>
void MargenDeCodigo::cadaLinea(F f) const {
    QTextBlock bloque = caja_.firstVisibleBlock();
    qreal y = caja_.blockBoundingGeometry(bloque).translated(caja_.contentOffset()).top();
    while (bloque.isValid() && y <= height()) {
        const qreal alto = caja_.blockBoundingRect(bloque).height();
        f(bloque.blockNumber() + 1, y, alto);
        y += alto;
        bloque = bloque.next();
    }
}

void MargenDeCodigo::paintEvent(QPaintEvent* /*evento*/) {
    QPainter p(this);
    const QPalette& paleta = caja_.palette();
    const QColor tinta = paleta.color(QPalette::Text);
    p.fillRect(rect(), sobrePapel(paleta, tinta, 0.06F));
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(caja_.font());
    const int lado = QFontMetrics(caja_.font()).height() - 4;
    std::set<int> conAviso;
    for (const CajaDeCodigo::Aviso& a : caja_.avisos())
        conAviso.insert(a.linea);
    cadaLinea([&](int linea, qreal y, qreal alto) {
        const bool actual = linea == caja_.lineaActual();
        p.setPen(actual ? tinta : sobrePapel(paleta, tinta, 0.6F));
        p.drawText(QRectF(0, y, width() - kAire, alto), Qt::AlignRight | Qt::AlignVCenter,
                   QString::number(linea));
        const QRectF simbolo(kAire / 2.0, y + (alto - lado) / 2, lado, lado);
        if (linea == caja_.lineaMarcada(CajaDeCodigo::Marca::Corrida)) {
            cruz(p, simbolo);
        } else if (linea == caja_.lineaMarcada(CajaDeCodigo::Marca::Comprobacion)) {
            triangulo(p, simbolo);
        } else if (conAviso.contains(linea)) {
            rombo(p, simbolo);
        }
    });
}

bool MargenDeCodigo::event(QEvent* evento) {
    if (evento->type() != QEvent::ToolTip) return QWidget::event(evento);
    const auto& ayuda = dynamic_cast<QHelpEvent&>(*evento);
    QString mensaje;
    cadaLinea([&](int linea, qreal y, qreal alto) {
        if (ayuda.y() >= y && ayuda.y() < y + alto) mensaje = caja_.mensajeDe(linea);
    });
    QToolTip::showText(ayuda.globalPos(), ayudaSinMarcas(mensaje), this);
    return true;
}

} // namespace kv
