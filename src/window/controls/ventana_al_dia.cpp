// SPDX-License-Identifier: Apache-2.0
#include "window/controls/ventana_al_dia.h"

#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"

#include <QIcon>
#include <QTimer>

namespace kv {

VentanaAlDia::VentanaAlDia(const char* nombre, int ritmoMs, QWidget* padre)
    : QWidget(padre, Qt::Window), ritmo_(hacer<QTimer>(this)) {
    setObjectName(nombre);
    setWindowIcon(iconoDelPrograma());
    ritmo_->setInterval(ritmoMs);
    connect(ritmo_, &QTimer::timeout, this, &VentanaAlDia::refrescar);
}

void VentanaAlDia::showEvent(QShowEvent* suceso) {
    QWidget::showEvent(suceso);
    refrescar();
    ritmo_->start();
}

void VentanaAlDia::hideEvent(QHideEvent* suceso) {
    QWidget::hideEvent(suceso);
    ritmo_->stop();
    recordarLugar(*this);
}

} // namespace kv
