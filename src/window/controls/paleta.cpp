// SPDX-License-Identifier: Apache-2.0
#include "window/controls/paleta.h"

#include "window/controls/colores.h"
#include "window/controls/control.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

namespace kv {
namespace {

/// `color` led towards `hacia` in small steps until it can be read on `fondo`, or is there.
QColor hastaQueSeLea(const QColor& color, const QColor& hacia, const QColor& fondo) {
    constexpr int kPasos = 20;
    for (int i = 0; i < kPasos; ++i) {
        const QColor este = mezcla(color, hacia, static_cast<float>(i) / kPasos);
        if (contraste(este, fondo) >= kContrasteDeTexto) return este;
    }
    return hacia;
}

class CuidadorDeColores final : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* objeto, QEvent* suceso) override {
        if (objeto == qApp && suceso->type() == QEvent::ApplicationPaletteChange) cuidar();
        return false;
    }
    /// Only the roles that have to be others are set: the rest goes on following the desktop.
    static void cuidar() {
        const QPalette ahora = QApplication::palette();
        const QPalette mejor = legible(ahora);
        if (mejor != ahora) QApplication::setPalette(mejor);
    }
};

/// Draws an edge around check boxes whose own is as dark as what they lie on.
class EstiloConBordes final : public QProxyStyle {
  public:
    void drawPrimitive(PrimitiveElement que, const QStyleOption* como, QPainter* p,
                       const QWidget* donde) const override {
        QProxyStyle::drawPrimitive(que, como, p, donde);
        if (que != PE_IndicatorCheckBox && que != PE_IndicatorItemViewItemCheck) return;
        if (!esOscura(como->palette)) return;
        p->save();
        p->setPen(sobrePapel(como->palette, como->palette.color(QPalette::Text), 0.6F));
        p->setBrush(Qt::NoBrush);
        p->drawRect(QRectF(como->rect).adjusted(0.5, 0.5, -0.5, -0.5));
        p->restore();
    }
};

} // namespace

QPalette legible(QPalette paleta) {
    const QColor papel = paleta.color(QPalette::Base);
    const QColor tinta = paleta.color(QPalette::Text);
    for (const auto grupo : {QPalette::Active, QPalette::Inactive}) {
        const auto arreglar = [&](QPalette::ColorRole cual, const QColor& hacia,
                                  const QColor& fondo) {
            const QColor color = mezcla(fondo, paleta.color(grupo, cual), 1); // without alpha
            if (contraste(color, fondo) >= kContrasteDeTexto) return;
            paleta.setColor(grupo, cual, hastaQueSeLea(color, hacia, fondo));
        };
        arreglar(QPalette::PlaceholderText, tinta, papel);
        arreglar(QPalette::Link, tinta, papel);
        arreglar(QPalette::LinkVisited, tinta, papel);
        // The ground of what is chosen gives way, and its letters stay what they are.
        const QColor letras = paleta.color(grupo, QPalette::HighlightedText);
        arreglar(QPalette::Highlight, letras.lightness() > 127 ? Qt::black : Qt::white, letras);
    }
    return paleta;
}

void cuidarColores() {
    QApplication::setStyle(hacer<EstiloConBordes>()); // NOLINT: the application owns it
    qApp->installEventFilter(hacer<CuidadorDeColores>(qApp));
    CuidadorDeColores::cuidar();
}

} // namespace kv
