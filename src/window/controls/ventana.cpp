// SPDX-License-Identifier: Apache-2.0
#include "window/controls/ventana.h"

#include "window/controls/control.h"

#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTextDocument>
#include <QWidget>

namespace kv {

void prepararVentana(QWidget& ventana) {
    ventana.setProperty(kPropiedadDeAyuda, kContextoDeAyuda);
    for (QWidget* control : ventana.findChildren<QWidget*>())
        control->setProperty(kPropiedadDeAyuda, kContextoDeAyuda);
}

QWidget* encadenarTabulador(QLayout& donde, QWidget* ultimo) {
    for (int i = 0; i < donde.count(); ++i) {
        QWidget* w = donde.itemAt(i)->widget();
        QLayout* adentro = w != nullptr ? w->layout() : donde.itemAt(i)->layout();
        if (adentro != nullptr) ultimo = encadenarTabulador(*adentro, ultimo);
        if (w == nullptr || (w->focusPolicy() & Qt::TabFocus) == 0) continue;
        if (ultimo != nullptr) QWidget::setTabOrder(ultimo, w);
        ultimo = w;
    }
    return ultimo;
}

QLabel* rotulo(const char* nombre, QWidget* padre) {
    auto* nuevo = control<QLabel>(nombre, padre);
    nuevo->setTextFormat(Qt::PlainText);
    return nuevo;
}

QString ayudaSinMarcas(const QString& texto) {
    return Qt::mightBeRichText(texto) ? Qt::convertFromPlainText(texto) : texto;
}

void acomodar(QWidget& ventana, const QSize& tamano) {
    constexpr QSize kMarco{12, 40}; // what the desktop puts around a window
    ventana.resize(tamano.boundedTo(ventana.screen()->availableSize() - kMarco));
}

void alFrente(QWidget& ventana) {
    ventana.show();
    ventana.raise();
    ventana.activateWindow();
}

/// A station's screen with the trace of a value.
QIcon iconoDelPrograma() {
    QIcon icono;
    for (const int lado : {16, 32, 64}) {
        QPixmap lienzo(lado, lado);
        lienzo.fill(Qt::transparent);
        QPainter p(&lienzo);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(lado / 32.0, lado / 32.0);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x1F, 0x4E, 0x79));
        p.drawRoundedRect(QRectF(1, 1, 30, 30), 6, 6);
        p.setPen(QPen(QColor(0x7F, 0xE0, 0x8A), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QList<QPointF>{{5, 20}, {11, 20}, {15, 8}, {20, 25}, {23, 16}, {27, 16}});
        icono.addPixmap(lienzo);
    }
    return icono;
}

} // namespace kv
