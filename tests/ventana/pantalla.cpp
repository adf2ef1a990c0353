#include "ventana/pantalla.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QWidget>

#include <gtest/gtest.h>

namespace kv {

void fotografiar(QWidget& ventana, const char* nombre) {
    QDir().mkpath(KV_FOTOS);
    EXPECT_TRUE(ventana.grab().save(QString(KV_FOTOS) + "/" + nombre + ".png"));
}

} // namespace kv

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication aplicacion(argc, argv);
    return RUN_ALL_TESTS();
}
