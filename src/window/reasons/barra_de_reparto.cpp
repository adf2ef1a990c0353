// SPDX-License-Identifier: Apache-2.0
#include "window/reasons/barra_de_reparto.h"

#include "window/controls/colores.h"

#include <QPainter>

#include <array>
#include <cmath>

namespace kv {
namespace {

struct Parte {
    QString nombre;
    std::int64_t us;
    QColor color;
    Qt::BrushStyle trama; ///< told apart without colours, too
};

std::array<Parte, 4> partes(const RepartoDeLinea& r, const QPalette& paleta) {
    const QColor tinta = paleta.color(QPalette::Text);
    return {
        Parte{BarraDeReparto::tr("respuestas"), r.respuestas, QColor(0x2E, 0x9E, 0x44),
              Qt::SolidPattern},
        {BarraDeReparto::tr("silencio"), r.silencio, colorDeBad(paleta), Qt::BDiagPattern},
        {BarraDeReparto::tr("pausas"), r.pausas, sobrePapel(paleta, tinta, 0.4F),
         Qt::Dense4Pattern},
        {BarraDeReparto::tr("libre"), r.libre, sobrePapel(paleta, tinta, 0.1F), Qt::SolidPattern}};
}

} // namespace

BarraDeReparto::BarraDeReparto(QWidget* padre) : QWidget(padre) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize BarraDeReparto::sizeHint() const { return {200, 3 * fontMetrics().lineSpacing()}; }

void BarraDeReparto::poner(const RepartoDeLinea& reparto) {
    reparto_ = reparto;
    setAccessibleName(enPalabras());
    update();
}

QString BarraDeReparto::enPalabras() const {
    if (reparto_.total() <= 0) return {};
    QStringList palabras;
    for (const Parte& p : partes(reparto_, palette())) {
        const double parte =
            static_cast<double>(p.us) * 100 / static_cast<double>(reparto_.total());
        palabras << p.nombre + " " + QString::number(std::lround(parte)) + " %";
    }
    return palabras.join(",  ");
}

void BarraDeReparto::paintEvent(QPaintEvent* /*suceso*/) {
    QPainter p(this);
    const int alto = fontMetrics().lineSpacing();
    const QRect barra(0, 2, width() - 1, alto + 4);
    int x = barra.left();
    if (reparto_.total() > 0) {
        std::int64_t hasta = 0;
        for (const Parte& parte : partes(reparto_, palette())) {
            hasta += parte.us;
            const int fin =
                barra.left() + static_cast<int>(barra.width() * hasta / reparto_.total());
            p.fillRect(QRect(x, barra.top(), fin - x, barra.height()),
                       QBrush(parte.color, parte.trama));
            x = fin;
        }
    }
    p.setPen(sobrePapel(palette(), palette().color(QPalette::Text), 0.4F));
    p.drawRect(barra);
    p.setPen(palette().color(QPalette::WindowText));
    p.drawText(QRect(0, barra.bottom() + 3, width(), alto), Qt::AlignLeft, enPalabras());
}

} // namespace kv
