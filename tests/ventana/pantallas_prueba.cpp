// SPDX-License-Identifier: Apache-2.0
// Every window on whatever screen the program is run on: nothing crushed, cut or off the screen.
// Run on small screens and on doubled ones.

#include "ventana/pantalla.h"
#include "ventana/principal.h"
#include "window/dialogs/FrmEscritura.h"
#include "window/dialogs/FrmPuertos.h"
#include "window/script/FrmScript.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QToolButton>

namespace kv {
namespace {

/// What can be scrolled into sight is judged by the room that it has in what is scrolled.
QRect sitio(const QWidget& control, const QWidget& ventana) {
    for (const QWidget* w = &control; w != &ventana; w = w->parentWidget()) {
        const auto* area = qobject_cast<QScrollArea*>(w->parentWidget()->parentWidget());
        if (area == nullptr || area->widget() != w) continue;
        EXPECT_GE(area->viewport()->width(), w->minimumSizeHint().width())
            << "only downwards is there anything to be scrolled to";
        return w->rect().translated(control.mapFrom(w, QPoint()));
    }
    return ventana.rect().translated(-control.mapTo(&ventana, QPoint()));
}

QSize necesario(const QWidget& control) {
    constexpr int kLineas = 3;
    const int alto = control.fontMetrics().lineSpacing();
    if (qobject_cast<const QAbstractItemView*>(&control) != nullptr) return {80, 2 * alto};
    if (qobject_cast<const QPlainTextEdit*>(&control) != nullptr) return {120, kLineas * alto};
    if (qobject_cast<const QLineEdit*>(&control) != nullptr) return {40, alto};
    if (const auto* boton = qobject_cast<const QAbstractButton*>(&control))
        return {boton->fontMetrics().size(Qt::TextShowMnemonic, boton->text()).width(), alto};
    QSize todo = control.minimumSizeHint();
    if (const auto* rotulo = qobject_cast<const QLabel*>(&control)) {
        const bool cede = rotulo->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
        if (cede) todo.setWidth(0);
        if (rotulo->wordWrap() && !cede) todo.setHeight(rotulo->heightForWidth(rotulo->width()));
    }
    return todo;
}

bool seJuzga(const QWidget& control) {
    const auto* padre = control.parentWidget();
    if (qobject_cast<const QAbstractItemView*>(padre) != nullptr ||
        qobject_cast<const QLineEdit*>(padre) != nullptr)
        return false; // headers, and buttons inside of boxes
    return qobject_cast<const QAbstractButton*>(&control) != nullptr ||
           qobject_cast<const QLineEdit*>(&control) != nullptr ||
           qobject_cast<const QLabel*>(&control) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&control) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(&control) != nullptr;
}

void juzgar(QWidget& ventana, const char* foto) {
    QCoreApplication::processEvents();
    const QRect pantalla = ventana.screen()->availableGeometry();
    EXPECT_TRUE(pantalla.contains(ventana.frameGeometry()))
        << foto << ": " << ventana.width() << " x " << ventana.height();
    std::vector<const QWidget*> controles;
    for (const QWidget* c : ventana.findChildren<QWidget*>()) {
        if (c->isVisible() && c->window() == &ventana && seJuzga(*c)) controles.push_back(c);
    }
    for (const QWidget* c : controles) {
        const auto quien = [&] {
            const auto* boton = qobject_cast<const QAbstractButton*>(c);
            const auto* rotulo = qobject_cast<const QLabel*>(c);
            return std::string(foto) + ": " + c->metaObject()->className() + " " +
                   deQt(c->objectName()) + " " + (boton ? deQt(boton->text()) : "") +
                   (rotulo ? deQt(rotulo->text()) : "");
        };
        const QSize falta = necesario(*c);
        EXPECT_TRUE(sitio(*c, ventana).contains(c->rect())) << quien() << " is cut";
        EXPECT_TRUE(c->width() >= falta.width() && c->height() >= falta.height())
            << quien() << " is crushed: " << c->width() << " x " << c->height() << ", needs "
            << falta.width() << " x " << falta.height();
        for (const QWidget* otro : controles) {
            if (otro == c || otro->parentWidget() != c->parentWidget()) continue;
            EXPECT_FALSE(c->geometry().intersects(otro->geometry()))
                << quien() << " lies over " << deQt(otro->objectName());
        }
    }
    fotografiar(ventana, (std::string(foto) + "_" + std::to_string(pantalla.width()) + "x" +
                          std::to_string(pantalla.height()))
                             .c_str());
}

class Pantallas : public Principal {
  protected:
    Pantallas() {
        p.archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", "a = 1\r\nb = 1 / 0\r\n");
        arrancar();
    }
    QTableView& conexiones() { return hallar<QTableView>(form, "lstViewSockets"); }
};

} // namespace

TEST_F(Pantallas, LaPrincipalYCadaUnaDeSusFichas) {
    auto& listas = hallar<QTabWidget>(form, "fichasDeListas");
    auto& trazas = hallar<QTabWidget>(form, "fichasDeTrazas");
    p.motor.sucesos.decir({.que = Que::Forzado}, "1.1.10");
    for (int i = 0; i < trazas.count(); ++i) {
        trazas.setCurrentIndex(i);
        listas.setCurrentIndex(i % 2);
        form.refrescar();
        juzgar(form, ("form1_" + std::to_string(i)).c_str());
    }
    clic(form, "btnTamañoFormulario");
    juzgar(form, "form1_chica");
}

TEST_F(Pantallas, LasOtrasVentanas) {
    p.motor.operador.MnuServer();
    ventanas.mirarVisibilidad();
    juzgar(ventanas.servidor(), "frmservertcp");
    clic(form, "BtnConfig");
    juzgar(*form.findChild<FrmPuertos*>(), "frmpuertos");
    form.findChild<QAction*>("MnuAbout")->trigger();
    juzgar(*form.findChild<QWidget*>("FrmAbout"), "frmabout");
    for (QDialog* visto : form.findChildren<QDialog*>())
        visto->close();
    form.findChild<QAction*>("MnuScript")->trigger();
    auto& guion = *form.findChild<FrmScript*>();
    guion.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&guion));
    QTest::keyClick(&hallar<QPlainTextEdit>(guion, "TextCodigo"), Qt::Key_H, Qt::ControlModifier);
    EXPECT_TRUE(hallar<QWidget>(guion, "TxtReemplazo").isVisible());
    hallar<QWidget>(guion, "AvisoDeCambio").show();
    juzgar(guion, "frmscript");
}

TEST_F(Pantallas, LasDeVigilancia) {
    p.motor.sucesos.decir({.que = Que::EnlaceAbajo, .conexion = 0});
    variables().selectAll();
    hallar<QAction>(variables(), "accTendencias").trigger();
    variables().setCurrentIndex(variables().model()->index(0, 0));
    conexiones().setCurrentIndex(conexiones().model()->index(0, 0));
    for (int i = 0; i < 10; ++i) {
        avanzar(1'000);
        form.findChild<Vigilancia*>()->mirar();
    }
    for (const auto& [entrada, ventana] : {std::pair{"MnuResumen", "FrmResumen"},
                                           {"MnuSucesos", "FrmSucesos"},
                                           {"MnuTendencias", "FrmTendencias"},
                                           {"MnuConexion", "FrmConexion"},
                                           {"MnuPorQue", "FrmPorQue"},
                                           {"MnuManual", "FrmManual"}}) {
        menu(entrada);
        juzgar(hallar<QWidget>(form, ventana), enQt(ventana).toLower().toStdString().c_str());
    }
}

TEST_F(Pantallas, LosDialogos) {
    FrmEscritura escritura(p.motor.operador, &form);
    escritura.setAttribute(Qt::WA_DeleteOnClose, false);
    escritura.mostrarPara("1", "1", "10", 43690);
    juzgar(escritura, "frmescritura");
    std::string largo;
    for (int i = 0; i < 200; ++i)
        largo += "palabra " + std::string(i % 3 == 0 ? "\n" : "");
    mensajero.avisar({largo, "Atencion", true});
    juzgar(*mensajeSobre(form), "mensaje");
    mensajero.preguntarTexto({"ScanTime", "Scan Time del Bloque (segundos)\r\n1.1.10/1", "1", 0},
                             [](const QString&) {});
    juzgar(*form.findChild<QInputDialog*>(), "pregunta");
    QTest::mouseClick(&hallar<QToolButton>(form, "btnGuardar"), Qt::LeftButton);
    juzgar(*form.findChild<QFileDialog*>(), "guardar");
}

} // namespace kv
