#include "ui/qt/ventana.h"

#include <QWidget>

namespace kv {

void prepararVentana(QWidget& ventana) {
    ventana.setProperty(kPropiedadDeAyuda, kContextoDeAyuda);
    for (QWidget* control : ventana.findChildren<QWidget*>())
        control->setProperty(kPropiedadDeAyuda, kContextoDeAyuda);
}

} // namespace kv
