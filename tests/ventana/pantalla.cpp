// SPDX-License-Identifier: Apache-2.0
#include "ventana/pantalla.h"

#include "window/controls/paleta.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QSettings>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

namespace kv {

void fotografiar(QWidget& ventana, const char* nombre) {
    QDir().mkpath(KV_FOTOS);
    QCoreApplication::processEvents(); // labels take the room that their texts need
    EXPECT_TRUE(ventana.grab().save(QString(KV_FOTOS) + "/" + nombre + ".png"));
}

} // namespace kv

/// Asked for by the leak checker of the sanitizer builds: the toolkit's accessibility bridge looks
/// for a session bus, and that library keeps what it read of the machine.
extern "C" const char* __lsan_default_suppressions() { // NOLINT: the checker gives the name
    return "leak:libdbus-1";
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication aplicacion(argc, argv);
    kv::cuidarColores(); // as the program does
    // What windows remember is not that of whoever runs the tests.
    const QTemporaryDir ajustes;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, ajustes.path());
    return RUN_ALL_TESTS();
}
