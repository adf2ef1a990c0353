// SPDX-License-Identifier: Apache-2.0
#include "window/dialogs/FrmAbout.h"

#include "text/nombre_del_programa.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>

#include <array>

namespace kv {
namespace {

constexpr int kAncho = 300;
constexpr int kAlto = 96;
constexpr int kLadoDelIcono = 48;

void caja(QPainter& pintor, const QRectF& donde, const QString& texto) {
    pintor.drawRoundedRect(donde, 6, 6);
    pintor.drawText(donde, Qt::AlignCenter, texto);
}

/// What the program does, in a picture: the supervisor on one side, the stations on the other.
QPixmap dibujo(const QWidget& donde) {
    const qreal escala = donde.devicePixelRatioF();
    QPixmap hoja(QSize(kAncho, kAlto) * escala);
    hoja.setDevicePixelRatio(escala);
    hoja.fill(Qt::transparent);
    QPainter p(&hoja);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(donde.palette().color(QPalette::WindowText), 1.5));
    p.setBrush(donde.palette().color(QPalette::Base));
    const std::array<qreal, 3> alturas{2, 34, 66};
    p.drawLine(QPointF(92, 48), QPointF(116, 48));
    for (const qreal y : alturas) {
        p.drawLine(QPointF(186, 48), QPointF(214, y + 14));
        caja(p, {214, y, 82, 28}, "PLC");
    }
    caja(p, {4, 26, 88, 44}, "SCADA");
    p.setBrush(donde.palette().color(QPalette::Highlight));
    p.setPen(QPen(donde.palette().color(QPalette::HighlightedText), 1.5));
    caja(p, {116, 26, 70, 44}, "Driver");
    return hoja;
}

QIcon iconoDe(const QWidget* padre, const QStyle& estilo) {
    const QIcon suyo = padre != nullptr ? padre->window()->windowIcon() : QIcon();
    return suyo.isNull() ? estilo.standardIcon(QStyle::SP_ComputerIcon) : suyo;
}

} // namespace

FrmAbout::FrmAbout(QWidget* padre, const QString& version) : QDialog(padre) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("FrmAbout");
    setWindowTitle("Driver KV2200v1 - About");
    if (padre != nullptr) setWindowIcon(padre->window()->windowIcon());
    auto* rejilla = hacer<QGridLayout>(this);
    rejilla->setContentsMargins(18, 18, 18, 14);
    rejilla->setHorizontalSpacing(16);
    rejilla->setVerticalSpacing(10);
    rejilla->setColumnStretch(1, 1);
    auto* icono = control<QLabel>("Icono", this);
    icono->setPixmap(iconoDe(padre, *style()).pixmap(QSize(kLadoDelIcono, kLadoDelIcono)));
    icono->setAccessibleName(tr("Icono del programa"));
    rejilla->addWidget(icono, 0, 0, 2, 1, Qt::AlignTop);
    auto* nombre = control<QLabel>("Label1_1", "<h2>" + enQt(kNombreDelPrograma) + "</h2>", this);
    rejilla->addWidget(nombre, 0, 1);
    auto* numero = control<QLabel>("Label_ControlDeVercion", tr("Versión %1").arg(version), this);
    numero->setTextInteractionFlags(Qt::TextSelectableByMouse);
    rejilla->addWidget(numero, 1, 1);
    auto* imagen = control<QLabel>("Image1", this);
    imagen->setPixmap(dibujo(*this));
    imagen->setAccessibleName(tr("El driver entre el supervisor y las estaciones"));
    rejilla->addWidget(imagen, 2, 0, 1, 2, Qt::AlignHCenter);
    auto* que = control<QLabel>(
        "Label2", tr("Driver de comunicaciones entre el supervisor y las estaciones KV2200."),
        this);
    rejilla->addWidget(que, 3, 0, 1, 2);
    auto* cerrar = hacer<QPushButton>(tr("&Cerrar"), this);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    rejilla->addWidget(cerrar, 4, 1, Qt::AlignRight);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    prepararVentana(*this);
}

} // namespace kv
