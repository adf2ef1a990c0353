#include "ui/qt/idioma.h"

#include "ui/qt/control.h"

#include <QCoreApplication>
#include <QTranslator>

namespace kv {

void ponerIdioma(std::string_view idioma) {
    if (idioma != "en") return;
    auto* traductor = hacer<QTranslator>(QCoreApplication::instance());
    if (traductor->load(":/i18n/DriverKV2200_en.qm"))
        QCoreApplication::installTranslator(traductor);
}

} // namespace kv
