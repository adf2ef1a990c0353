// SPDX-License-Identifier: Apache-2.0
#include "window/controls/memoria.h"

#include "text/nombre_del_programa.h"
#include "window/controls/control.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QWidget>

#include <filesystem>
#include <system_error>

namespace kv {
namespace {

QSettings& archivo() {
    static QSettings unico(QSettings::IniFormat, QSettings::UserScope, enQt(kNombreDelPrograma),
                           "ventana");
    return unico;
}

QString claveDeLugar(const QWidget& ventana) { return "lugares/" + ventana.objectName(); }

QString rutaDe(const QString& nombre) {
    return QFileInfo(archivo().fileName()).dir().filePath(nombre);
}

} // namespace

QVariant recordado(const QString& clave, const QVariant& siNo) {
    return archivo().value(clave, siNo);
}

void recordar(const QString& clave, const QVariant& valor) {
    if (archivo().value(clave) != valor) archivo().setValue(clave, valor);
}

QByteArray recordadoAparte(const QString& nombre) {
    constexpr qint64 kMaximo = 4 << 20;
    QFile archivoSuyo(rutaDe(nombre));
    return archivoSuyo.open(QIODevice::ReadOnly) ? archivoSuyo.read(kMaximo) : QByteArray();
}

void recordarAparte(const QString& nombre, const QByteArray& que) {
    const QString ruta = rutaDe(nombre);
    QDir().mkpath(QFileInfo(ruta).path());
    // The old one stays whole until the new one is; nobody waits for the disk.
    QFile nuevo(ruta + ".nuevo");
    const bool escrito = nuevo.open(QIODevice::WriteOnly) && nuevo.write(que) == que.size();
    nuevo.close();
    const auto enDisco = [](const QString& r) { return r.toStdString(); };
    if (std::error_code error; escrito)
        std::filesystem::rename(enDisco(nuevo.fileName()), enDisco(ruta), error);
}

void recordarLugar(const QWidget& ventana) {
    recordar(claveDeLugar(ventana), ventana.saveGeometry());
}

bool volverAlLugar(QWidget& ventana) {
    return ventana.restoreGeometry(recordado(claveDeLugar(ventana)).toByteArray());
}

} // namespace kv
