// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/controls/idioma.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

#include <gtest/gtest.h>

#include <memory>

namespace kv {

/// A control by its name; a test that asks for one that is not there is wrong, and ends.
template <class T>
[[nodiscard]] T& hallar(QWidget& ventana, const QString& nombre) {
    T* hallado = ventana.findChild<T*>(nombre);
    if (hallado == nullptr) qFatal("no control named %s", qPrintable(nombre));
    return *hallado;
}

inline void clic(QWidget& ventana, const char* boton) {
    QTest::mouseClick(&hallar<QPushButton>(ventana, boton), Qt::LeftButton);
}

/// Lets events run until the condition holds; false when it does not within five seconds.
template <class F>
[[nodiscard]] bool llega(F condicion) {
    return QTest::qWaitFor(condicion, 5000);
}

/// The open message box over a window, or null.
[[nodiscard]] inline QMessageBox* mensajeSobre(QWidget& ventana) {
    for (QMessageBox* caja : ventana.findChildren<QMessageBox*>()) {
        if (caja->isVisible()) return caja;
    }
    return nullptr;
}

/// Presses a button of the open message box by its text, "&" left out; waits until it is gone.
inline void responder(QWidget& ventana, const QString& boton) {
    QPointer<QMessageBox> caja = mensajeSobre(ventana);
    ASSERT_NE(caja, nullptr) << "no message to answer";
    QAbstractButton* elegido = nullptr;
    for (QAbstractButton* b : caja->buttons()) {
        if (b->text().remove('&') == boton) elegido = b;
    }
    ASSERT_NE(elegido, nullptr) << qPrintable(boton);
    QTest::mouseClick(elegido, Qt::LeftButton);
    EXPECT_TRUE(llega([&] { return caja == nullptr; }));
}

/// The dark palette of the pictures; the usual one comes back at the end of the scope.
class ConPaletaOscura {
  public:
    ConPaletaOscura() {
        QPalette p(QColor(0x35, 0x35, 0x35));
        p.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
        p.setColor(QPalette::Highlight, QColor(0x2A, 0x82, 0xDA));
        QApplication::setPalette(p);
    }
    ~ConPaletaOscura() { QApplication::setPalette(antes_); }
    ConPaletaOscura(const ConPaletaOscura&) = delete;
    ConPaletaOscura& operator=(const ConPaletaOscura&) = delete;

  private:
    QPalette antes_ = QApplication::palette();
};

/// Windows that are made speak this language; Spanish comes back at the end of the scope.
class EnIdioma {
  public:
    explicit EnIdioma(const char* idioma) { ponerIdioma(idioma); }
    ~EnIdioma() {
        ponerIdioma("");
        for (QTranslator* t : qApp->findChildren<QTranslator*>())
            std::unique_ptr<QTranslator>(t).reset();
        QLocale::setDefault(QLocale::c());
    }
    EnIdioma(const EnIdioma&) = delete;
    EnIdioma& operator=(const EnIdioma&) = delete;
};

} // namespace kv
