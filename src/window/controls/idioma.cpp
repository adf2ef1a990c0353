// SPDX-License-Identifier: Apache-2.0
#include "window/controls/idioma.h"

#include "window/controls/control.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace kv {
namespace {

bool& ingles() {
    static bool es = false;
    return es;
}

} // namespace

bool enIngles() { return ingles(); }

void ponerIdioma(std::string_view idioma) {
    ingles() = idioma == "en";
    QLocale::setDefault(ingles() ? QLocale(QLocale::English)
                                 : QLocale(QLocale::Spanish, QLocale::Argentina));
    auto* traductor = hacer<QTranslator>(QCoreApplication::instance());
    if (traductor->load(ingles() ? ":/i18n/DriverKV2200_en.qm" : ":/i18n/Qt_es.qm"))
        QCoreApplication::installTranslator(traductor);
}

} // namespace kv
