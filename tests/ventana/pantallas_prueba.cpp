// SPDX-License-Identifier: Apache-2.0
// Every window in both languages and on light and dark, on whatever screen the program is run on:
// nothing crushed, cut, off the screen, pale or left in the other language. Run on small screens
// and on doubled ones.

#include "ventana/juicio.h"
#include "ventana/pantalla.h"
#include "ventana/principal.h"
#include "window/controls/colores.h"
#include "window/controls/memoria.h"
#include "window/dialogs/FrmEscritura.h"
#include "window/dialogs/FrmPuertos.h"
#include "window/lists/estado_de_fila.h"
#include "window/script/FrmScript.h"
#include "window/trends/lienzo.h"

#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScreen>
#include <QTabBar>
#include <QToolButton>

#include <optional>

namespace kv {
namespace {

struct Aspecto {
    const char* idioma;
    bool oscuro;
};

/// What has to be so before there is any window.
struct AspectoPuesto {
    explicit AspectoPuesto(const Aspecto& aspecto) : idioma(aspecto.idioma) {
        if (aspecto.oscuro) oscura.emplace();
    }
    EnIdioma idioma;
    std::optional<ConPaletaOscura> oscura;
};

/// A plant in which each sort of trouble is to be seen, and hands that open its windows.
class TodasLasVentanas : private AspectoPuesto, public Principal {
  public:
    explicit TodasLasVentanas(const Aspecto& aspecto) : AspectoPuesto(aspecto) {
        p.archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip",
                         "' suma\r\nDim a\r\na = 1\r\nb = 1 / 0\r\nmw.Nada \"x\"\r\n");
        p.archivos.poner("/kv/descripciones.csv",
                         "direccion;descripcion;unidad\r\n1.1.10;Nivel del tanque;m\r\n");
        plc.demora = [](const Solicitud& t) {
            return t[3] == 0x1F ? std::nullopt : std::optional(0.0); // one is never answered
        };
        p.ajuste("VER", "1");
        arrancar();
        p.motor.operador.activarBloque(3, false);
        avanzar(60'000);
        for (const char* direccion : {"nada", "9.9.10", "1.2.10", "1.1.FF", "1.1.10.16"})
            p.motor.operador.escribirDireccion(direccion, 7);
        p.motor.operador.escribirDireccion("1.1.10", 70'000);
        p.motor.sucesos.decir({.que = Que::Forzado}, "1.1.10");
        variables().setCurrentIndex(variables().model()->index(0, 0));
        conexiones().setCurrentIndex(conexiones().model()->index(0, 0));
    }
    void TestBody() override {}

    /// Down the menu bar to the entry, as the mouse goes.
    void porMenu(const char* nombre) {
        QAction& accion = hallarAccion(nombre);
        for (QMenu* menu : form.findChildren<QMenu*>()) {
            if (!menu->actions().contains(&accion)) continue;
            QMenuBar& barra = *form.menuBar();
            QTest::mouseClick(&barra, Qt::LeftButton, {},
                              barra.actionGeometry(menu->menuAction()).center());
            ASSERT_TRUE(llega([&] { return menu->isVisible(); })) << nombre;
            if (mirarMenus) mirarMenus(*menu);
            elegir(*menu, accion);
            return;
        }
        FAIL() << nombre << " is in no menu";
    }
    /// A menu does not take a click for a choice before the mouse has moved about in it.
    void elegir(QMenu& menu, QAction& accion) {
        bool elegida = false;
        QObject oido;
        QObject::connect(&accion, &QAction::triggered, &oido, [&elegida] { elegida = true; });
        const QPoint donde = menu.actionGeometry(&accion).center();
        constexpr int kPasos = 10;
        for (int paso = kPasos; paso >= 0; --paso)
            QTest::mouseMove(&menu, donde - QPoint(paso, 0), 1);
        QTest::mouseClick(&menu, Qt::LeftButton, {}, donde);
        ASSERT_TRUE(llega([&] { return elegida; })) << qPrintable(accion.objectName());
    }
    void ficha(const char* fichas, int cual) {
        QTabBar& barra = *hallar<QTabWidget>(form, fichas).tabBar();
        QTest::mouseClick(&barra, Qt::LeftButton, {}, barra.tabRect(cual).center());
    }
    template <class T>
    T& abierta() {
        T* ventana = form.findChild<T*>();
        if (ventana == nullptr) qFatal("no window of the sort");
        return *ventana;
    }
    QTableView& conexiones() { return hallar<QTableView>(form, "lstViewSockets"); }

    /// Opens every window and dialog in turn; `mirar` gets each, under the name of its picture.
    void recorrer(const std::function<void(QWidget&, const std::string&)>& mirar) {
        for (int i = 0; i < hallar<QTabWidget>(form, "fichasDeTrazas").count(); ++i) {
            ficha("fichasDeTrazas", i);
            ficha("fichasDeListas", i % 2);
            for (int vuelta = 0; vuelta < 3; ++vuelta) // traces follow at their own pace
                form.refrescar();
            mirar(form, "form1_" + std::to_string(i));
        }
        ficha("fichasDeListas", 0);
        clic(form, "btnTamañoFormulario");
        mirar(form, "form1_chica");
        clic(form, "btnTamañoFormulario");
        lasDeVigilancia(mirar);
        lasDelDriver(mirar);
        losDialogos(mirar);
    }
    std::function<void(QMenu&)> mirarMenus;

  private:
    void lasDeVigilancia(const std::function<void(QWidget&, const std::string&)>& mirar) {
        recordar("tendencias/minutos", 5);
        variables().selectAll();
        hallar<QAction>(variables(), "accTendencias").trigger();
        hallar<QWidget>(form, "FrmTendencias").close(); // drawn anew when it is shown
        variables().setCurrentIndex(variables().model()->index(0, 0));
        for (int i = 0; i < 120; ++i) {
            plc.registros[{1, 0x10}] = 100 + i % 17;
            plc.registros[{1, 0x11}] = 1000 - i % 40;
            if (i == 60) plc.cortar();
            avanzar(1'000);
            form.findChild<Vigilancia*>()->mirar();
        }
        for (const auto& [entrada, ventana] : {std::pair{"MnuResumen", "FrmResumen"},
                                               {"MnuSucesos", "FrmSucesos"},
                                               {"MnuTendencias", "FrmTendencias"},
                                               {"MnuConexion", "FrmConexion"},
                                               {"MnuPorQue", "FrmPorQue"},
                                               {"MnuManual", "FrmManual"}}) {
            porMenu(entrada);
            auto& abierta = hallar<QWidget>(form, ventana);
            mirar(abierta, enQt(ventana).toLower().toStdString());
            abierta.close();
        }
    }
    void lasDelDriver(const std::function<void(QWidget&, const std::string&)>& mirar) {
        p.arranque.abrirServidor();
        porMenu("MnuServer");
        avanzar(3'000);
        ventanas.mirarVisibilidad();
        for (int i = 0; i < 5; ++i)
            p.motor.sucesos.decir({.que = Que::AlCliente}, "[DRI]#1.1.10;116;6;#[/DRI]");
        p.motor.sucesos.decir({.que = Que::DelCliente}, "Read;1.1.10;FinRead;");
        p.motor.vista.servidor.cliente = {"10.0.0.9:40000", p.motor.operador.cifras().ms, false};
        ventanas.servidor().refrescar();
        mirar(ventanas.servidor(), "frmservertcp");
        clic(form, "BtnConfig");
        mirar(abierta<FrmPuertos>(), "frmpuertos");
        porMenu("MnuAbout");
        mirar(hallar<QWidget>(form, "FrmAbout"), "frmabout");
        for (QDialog* visto : form.findChildren<QDialog*>())
            visto->close();
        porMenu("MnuScript");
        auto& guion = abierta<FrmScript>();
        auto& codigo = hallar<QPlainTextEdit>(guion, "TextCodigo");
        guion.activateWindow();
        ASSERT_TRUE(llega([&] { return QApplication::focusWidget() == &codigo; }));
        mirar(guion, "frmscript");
        QTest::keyClick(&codigo, Qt::Key_H, Qt::ControlModifier);
        EXPECT_TRUE(hallar<QWidget>(guion, "TxtReemplazo").isVisible());
        hallar<QWidget>(guion, "AvisoDeCambio").show();
        mirar(guion, "frmscript_buscar");
        guion.hide();
    }
    void losDialogos(const std::function<void(QWidget&, const std::string&)>& mirar) {
        dobleClic(variables(), 0);
        mirar(abierta<FrmEscritura>(), "frmescritura");
        abierta<FrmEscritura>().mostrarPara("1", "1", "10.3", 1);
        mirar(abierta<FrmEscritura>(), "frmescritura-bit");
        abierta<FrmEscritura>().close();
        std::string largo;
        for (int i = 0; i < 200; ++i)
            largo += "palabra " + std::string(i % 3 == 0 ? "\n" : "");
        mensajero.avisar({largo, "Atencion", true});
        mirar(*mensajeSobre(form), "mensaje");
        mensajeSobre(form)->close();
        dobleClic(bloques(), 0);
        mirar(abierta<QInputDialog>(), "pregunta");
        abierta<QInputDialog>().close();
        QTest::mouseClick(&hallar<QToolButton>(form, "btnGuardar"), Qt::LeftButton);
        mirar(abierta<QFileDialog>(), "guardar");
        abierta<QFileDialog>().close();
    }
};

class Pantallas : public testing::TestWithParam<Aspecto> {};

/// On a busy machine the screen's server still says a new window's first size when it already has
/// the one that it needs, and says that one next.
void esperarAsentada(const QWidget& ventana) {
    QCoreApplication::processEvents();
    EXPECT_TRUE(llega([&] {
        return ventana.size() == ventana.size().expandedTo(ventana.minimumSizeHint());
    })) << qPrintable(ventana.objectName());
}

/// The same in both languages, rightly: names and figures.
bool esDeTodos(const QString& texto) {
    static const QRegularExpression fuera(
        "^(?:(?:Driver ?KV2200v?1?(?: - About)?|Driver|PLC|Bit|Scans|ScanTime|BAD|OK|Supervisor|no|"
        "min|h|ms|IP|TCP|h2|v|Variables|CSV|Ctrl|Shift|F)|"
        "[^A-Za-zÀ-ÿ])*$");
    return fuera.match(texto).hasMatch();
}

/// The words of the driver's own lists, which its log and its traces have too, and what the plant
/// calls its own: the same whatever the language.
bool esDeLasListas(const QString& texto) {
    static const QRegularExpression listas(
        "^(?:Conectado OK|NO Conectado|Conectando\\.\\.\\.|BAD - .*|SI|Habilitado desde .*|"
        "Deshabilitado por .*|Estacion sin respuesta .*|Script error: .*|The script stops: "
        ".*|\\[PLC .*|MW_.*|Nivel del tanque .*)$");
    return listas.match(texto).hasMatch();
}

/// Words that no English text has, and hardly a Spanish one lacks.
bool hayCastellano(const QString& texto) {
    static const QRegularExpression palabras(
        "\\b(?:de|desde|el|en|esta|está|hace|hasta|la|las|lo|los|por|que|se|sin|su|ya)\\b",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return palabras.match(texto).hasMatch();
}

/// What these say the driver wrote, or the disk: Spanish always.
const QSet<QString> kDelDriver{"lblProyecto", "lblEstado", "lblKeepALive",    "lblPuertoServidor",
                               "LblAhora",    "msgAviso",  "qt_msgbox_label", "lookInCombo"};

} // namespace

TEST_P(Pantallas, NadaCortadoNiPalido) {
    TodasLasVentanas todas(GetParam());
    const std::string aspecto =
        std::string("_") + GetParam().idioma + (GetParam().oscuro ? "_oscura" : "");
    todas.recorrer([&](QWidget& ventana, const std::string& foto) {
        esperarAsentada(ventana);
        const QRect pantalla = ventana.screen()->availableGeometry();
        const std::string nombre = foto + "_" + std::to_string(pantalla.width()) + "x" +
                                   std::to_string(pantalla.height()) + aspecto;
        juzgarLugares(ventana, nombre);
        juzgarContraste(ventana, nombre);
        fotografiar(ventana, nombre.c_str());
    });
}

INSTANTIATE_TEST_SUITE_P(Todas, Pantallas,
                         testing::Values(Aspecto{"es", false}, Aspecto{"es", true},
                                         Aspecto{"en", false}, Aspecto{"en", true}),
                         [](const auto& caso) {
                             return std::string(caso.param.idioma) +
                                    (caso.param.oscuro ? "_oscura" : "_clara");
                         });

TEST(Signos, SeVenSobreClaroSobreOscuroYEnLoElegido) {
    const auto mirar = [] {
        const QPalette paleta = qApp->palette();
        for (const auto& [papel, modo] : {std::pair{QPalette::Base, QIcon::Normal},
                                          {QPalette::AlternateBase, QIcon::Normal},
                                          {QPalette::Highlight, QIcon::Selected}}) {
            for (std::size_t e = 1; e < kEstadosDeFila; ++e) {
                QImage dibujo(32, 32, QImage::Format_RGB32);
                dibujo.fill(paleta.color(papel));
                QPainter lapiz(&dibujo);
                const auto estado = static_cast<EstadoDeFila>(e);
                senalDeEstado(estado).paint(&lapiz, dibujo.rect(), Qt::AlignCenter, modo);
                lapiz.end();
                EXPECT_GE(contrasteDe(dibujo), kContrasteDeSigno)
                    << e << " on " << deQt(paleta.color(papel).name());
            }
        }
        for (std::size_t i = 0; i < RegistroDeTendencias::kSeries; ++i)
            EXPECT_GE(contraste(LienzoDeTendencias::color(i, paleta), paleta.color(QPalette::Base)),
                      kContrasteDeTexto)
                << "its name is written in it";
    };
    mirar();
    const ConPaletaOscura oscura;
    mirar();
}

TEST(Textos, EstanEnLosDosIdiomas) {
    const auto textosEn = [](const char* idioma) {
        QMap<QString, QString> todos;
        TodasLasVentanas({idioma, false})
            .recorrer([&](QWidget& ventana, const std::string& /*foto*/) {
                todos.insert(textosDe(ventana));
            });
        return todos;
    };
    const auto es = textosEn("es");
    const auto en = textosEn("en");
    QStringList malos;
    for (auto t = en.begin(); t != en.end(); ++t) {
        if (esDeTodos(t.key()) || esDeLasListas(t.key()) ||
            kDelDriver.contains(t.value().section('/', -1)))
            continue;
        if (es.contains(t.key()) || hayCastellano(t.key())) malos << t.value() + ": " + t.key();
    }
    EXPECT_TRUE(malos.isEmpty()) << qPrintable(malos.join('\n'));
    EXPECT_GT(en.size(), 350);
}

} // namespace kv
