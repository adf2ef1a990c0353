// SPDX-License-Identifier: Apache-2.0
#include "window/controls/memoria.h"

#include <QSettings>
#include <QWidget>

namespace kv {
namespace {

QSettings& archivo() {
    static QSettings unico(QSettings::IniFormat, QSettings::UserScope, "DriverKV2200", "ventana");
    return unico;
}

QString claveDeLugar(const QWidget& ventana) { return "lugares/" + ventana.objectName(); }

} // namespace

QVariant recordado(const QString& clave, const QVariant& siNo) {
    return archivo().value(clave, siNo);
}

void recordar(const QString& clave, const QVariant& valor) {
    if (archivo().value(clave) != valor) archivo().setValue(clave, valor);
}

void recordarLugar(const QWidget& ventana) {
    recordar(claveDeLugar(ventana), ventana.saveGeometry());
}

bool volverAlLugar(QWidget& ventana) {
    return ventana.restoreGeometry(recordado(claveDeLugar(ventana)).toByteArray());
}

} // namespace kv
