// SPDX-License-Identifier: Apache-2.0
// What the toolkit itself says, in the language of the windows.

#include "platform/simulated/bucle_simulado.h"
#include "ventana/manos.h"
#include "ventana/pantalla.h"
#include "window/controls/idioma.h"
#include "window/traces/caja_de_traza.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QTreeView>

namespace kv {
namespace {

/// Asked last of all, so it is asked for what no other translator knows.
class Espia final : public QTranslator {
  public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* contexto, const char* texto, const char* /*nota*/,
                                    int /*n*/) const override {
        // Keys are called as they are on keyboards; the other two are never seen.
        const QStringList fuera{"QShortcut", "QGuiApplication", "QImageWriter"};
        if (contexto[0] == 'Q' && !fuera.contains(contexto))
            faltan.insert(QString(contexto) + ": " + texto);
        return {};
    }
    mutable QSet<QString> faltan;
};

/// Opens the context menu of a control, reads it and closes it.
QString menuDe(QWidget& control) {
    QContextMenuEvent suceso(QContextMenuEvent::Mouse, control.rect().center(),
                             control.mapToGlobal(control.rect().center()));
    QString textos;
    QTimer::singleShot(0, qApp, [&] { // a scroll bar runs its menu
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (const QAction* a : menu->actions())
                textos += a->text() + "\n";
            menu->close();
        }
    });
    QApplication::sendEvent(&control, &suceso);
    EXPECT_TRUE(llega([&] { return !textos.isEmpty(); })) << control.metaObject()->className();
    return textos;
}

class IdiomaDeVentanas : public testing::Test {
  protected:
    IdiomaDeVentanas() {
        QCoreApplication::installTranslator(&espia);
        ponerIdioma("");
    }
    ~IdiomaDeVentanas() override {
        for (QTranslator* t : qApp->findChildren<QTranslator*>())
            QCoreApplication::removeTranslator(t);
        QCoreApplication::removeTranslator(&espia);
        QLocale::setDefault(QLocale::c());
    }
    [[nodiscard]] QString faltan() const { return QStringList(espia.faltan.values()).join("\n"); }

    Espia espia;
};

} // namespace

TEST_F(IdiomaDeVentanas, LosMenusDelBotonDerechoSonCastellanos) {
    QWidget padre;
    QLineEdit linea("uno", &padre);
    QPlainTextEdit texto("dos", &padre);
    QSpinBox numero(&padre);
    QScrollBar deCostado(Qt::Horizontal, &padre);
    QScrollBar deArriba(Qt::Vertical, &padre);
    padre.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&padre));
    EXPECT_TRUE(menuDe(linea).startsWith("&Deshacer"));
    EXPECT_TRUE(menuDe(*texto.viewport()).contains("&Pegar"));
    texto.setReadOnly(true);
    EXPECT_TRUE(menuDe(*texto.viewport()).contains("Elegir todo"));
    menuDe(numero);
    menuDe(deCostado);
    menuDe(deArriba);
    EXPECT_EQ(faltan(), "") << qPrintable(faltan());
}

TEST_F(IdiomaDeVentanas, ElDialogoDeArchivosEsCastellano) {
    const QTemporaryDir carpeta;
    QFile(carpeta.filePath("traza.txt")).open(QIODevice::WriteOnly);
    QDir(carpeta.path()).mkdir("adentro");
    BucleSimulado bucle;
    const Tablas tablas;
    const Sucesos sucesos(bucle.reloj());
    const Trazas trazas(sucesos, tablas);
    CajaDeTraza caja(trazas.txtTramas, "Tramas", nullptr);
    caja.show();
    QTest::mouseClick(&hallar<QToolButton>(caja, "btnGuardar"), Qt::LeftButton);
    auto& dialogo = hallar<QFileDialog>(caja, "dlgGuardar");
    dialogo.setDirectory(carpeta.path());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialogo));
    auto& lista = hallar<QTreeView>(dialogo, "treeView");
    ASSERT_TRUE(llega([&] { return lista.model()->rowCount(lista.rootIndex()) == 2; }));
    menuDe(*lista.viewport());
    fotografiar(dialogo, "guardar");
    hallar<QLineEdit>(dialogo, "fileNameEdit").setText("traza.txt");
    QString pregunta;
    QTimer::singleShot(0, qApp, [&] { // this one is run by the toolkit
        if (auto* caja_ = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            pregunta = caja_->text();
            caja_->reject();
        }
    });
    QMetaObject::invokeMethod(&dialogo, "accept");
    EXPECT_TRUE(pregunta.contains("ya existe")) << qPrintable(pregunta);
    dialogo.reject();
    EXPECT_EQ(faltan(), "") << qPrintable(faltan());
}

} // namespace kv
