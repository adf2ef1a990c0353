// SPDX-License-Identifier: Apache-2.0
// The script editor on the file that a running plant's engine reads.

#include "apoyo/planta.h"
#include "operator/editor_de_guion.h"
#include "operator/tramos_de_guion.h"
#include "script/errores.h"
#include "vbscript/surroundings/fault.h"
#include "ventana/manos.h"
#include "ventana/pantalla.h"
#include "window/script/FrmScript.h"
#include "window/script/caja_de_codigo.h"

#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QRegularExpression>
#include <QScrollBar>

namespace kv {
namespace {

constexpr const char* kConfiguracion = "/kv/DRIVER_KV2200_Config.ini";
constexpr const char* kGuion = "/kv/DRIVER_KV2200_Config.MDrivScrip";
using Marca = CajaDeCodigo::Marca;

class Editor : public testing::Test {
  protected:
    void abrir(const std::string& guion) {
        p.archivos.poner(kGuion, guion);
        arrancarYAbrir();
    }
    void arrancarYAbrir() {
        p.arrancarYConectar();
        reabrir();
    }
    void reabrir() {
        ventana = std::make_unique<FrmScript>(editor, nullptr).release();
        ventana->show();
        ventana->activateWindow(); // key bindings are those of the active window
        ASSERT_TRUE(QTest::qWaitForWindowActive(ventana));
    }
    void TearDown() override {
        if (ventana != nullptr) clic(*ventana, "BtnCancelar");
        EXPECT_TRUE(seCerro());
    }
    [[nodiscard]] bool seCerro() {
        return llega([&] { return ventana == nullptr; });
    }
    [[nodiscard]] CajaDeCodigo& codigo() { return hallar<CajaDeCodigo>(*ventana, "TextCodigo"); }
    [[nodiscard]] QString mensaje() { return hallar<QLabel>(*ventana, "LblMensaje").text(); }
    [[nodiscard]] std::string archivo() { return p.archivos.contenido(kGuion); }
    void tecla(int cual, Qt::KeyboardModifiers con = Qt::NoModifier) {
        QTest::keyClick(&codigo(), static_cast<Qt::Key>(cual), con);
    }
    void ponerCursor(int linea) { codigo().irA(linea); }

    Configuracion config = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "1");
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
    EditorDeGuion editor{p.archivos, p.motor.guion, p.motor.scriptControl, p.motor.tablas};
    QPointer<FrmScript> ventana;
};

} // namespace

TEST_F(Editor, CadaAbrirYGuardarAgregaUnaLineaVaciaYNadaMas) {
    const std::string configuracion = p.archivos.contenido(kConfiguracion);
    arrancarYAbrir();
    EXPECT_EQ(codigo().texto(), "") << "a missing file is an empty text";
    QTest::keyClicks(&codigo(), "a=1");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(archivo(), "a=1\r\n");
    EXPECT_TRUE(ventana->isVisible());
    for (const char* sigue : {"a=1\r\n\r\n", "a=1\r\n\r\n\r\n"}) {
        clic(*ventana, "BtnCancelar");
        ASSERT_TRUE(seCerro());
        reabrir();
        tecla(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(archivo(), sigue);
    }
    EXPECT_EQ(p.archivos.contenido(kConfiguracion), configuracion);
}

TEST_F(Editor, CadaByteDelArchivoVuelveComoEstaba) {
    std::string todos = "' ";
    for (int b = 1; b < 256; ++b)
        todos += b == '\r' || b == '\n' ? ' ' : static_cast<char>(b);
    todos += std::string("x\0y", 3);
    abrir(todos + "\nb=2\rc=3");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(archivo(), todos + "\r\nb=2\r\nc=3\r\n\r\n");
}

TEST_F(Editor, UnCaracterQueElArchivoNoTieneSeRechazaYNadaSePierde) {
    abrir("a=1\r\n' total: ");
    codigo().appendPlainText(QString::fromUtf8("' 5 € ✓"));
    clic(*ventana, "BtnOk");
    ASSERT_NE(mensajeSobre(*ventana), nullptr);
    EXPECT_TRUE(mensajeSobre(*ventana)->text().contains(QString::fromUtf8("✓")));
    responder(*ventana, "OK");
    EXPECT_EQ(archivo(), "a=1\r\n' total: ");
    EXPECT_TRUE(ventana->isWindowModified());
    EXPECT_EQ(codigo().columnaActual(), 7);
    tecla(Qt::Key_Delete);
    p.archivos.negarEscrituras(true);
    clic(*ventana, "BtnOk");
    responder(*ventana, "OK");
    EXPECT_TRUE(ventana->isWindowModified()) << "a disk that refuses";
    p.archivos.negarEscrituras(false);
    clic(*ventana, "BtnOk");
    EXPECT_EQ(archivo(), "a=1\r\n' total: \r\n\r\n' 5 \x80 \r\n");
    EXPECT_FALSE(ventana->isWindowModified());
}

TEST_F(Editor, LoQueNoCompilaSeAvisaYSeGuarda) {
    abrir("a = 1\r\n");
    tecla(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&codigo(), "If a Then b = (");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(archivo(), "a = 1\r\nIf a Then b = (\r\n");
    EXPECT_EQ(mensajeSobre(*ventana), nullptr) << "a warning in its place, nothing to click away";
    EXPECT_EQ(codigo().lineaMarcada(Marca::Comprobacion), 2);
    EXPECT_TRUE(mensaje().contains("Guardado.")) << qPrintable(mensaje());
    EXPECT_TRUE(mensaje().endsWith(QString::fromUtf8("línea 2, columna 16: Error de sintaxis")))
        << qPrintable(mensaje());
    tecla(Qt::Key_Backspace);
    QTest::keyClicks(&codigo(), "2");
    tecla(Qt::Key_F7);
    EXPECT_EQ(codigo().lineaMarcada(Marca::Comprobacion), 0);
    EXPECT_EQ(mensaje(), "Sin errores.");
    EXPECT_TRUE(archivo().ends_with("(\r\n")) << "checking saves nothing";
}

TEST_F(Editor, LoQueNoPareceAPropositoSeSubrayaYSeRecorre) {
    abrir("nivel = MW_1_1_10\r\nx = nivle\r\n' nada\r\nmw.writeMW \"MW_1_1_11\", 1\r\n");
    tecla(Qt::Key_F7);
    EXPECT_EQ(mensaje(),
              QString::fromUtf8("⚠ Avisos: 2. El primero, en la línea 2, columna 5: nada "
                                "da valor a 'nivle', ni el guion ni la planta; ¿nivel?"));
    EXPECT_TRUE(codigo().mensajeDe(2).startsWith("nada da valor"));
    EXPECT_TRUE(codigo().mensajeDe(4).contains("'MW_1_1_11'"));
    EXPECT_EQ(codigo().lineaMarcada(Marca::Comprobacion), 0) << "it compiles";
    QStringList subrayado;
    for (const auto& s : codigo().extraSelections()) {
        if (s.format.underlineStyle() == QTextCharFormat::WaveUnderline)
            subrayado += s.cursor.selectedText();
    }
    EXPECT_EQ(subrayado.join(" "), "nivle \"MW_1_1_11\"");
    const auto lugar = [&] { return std::pair(codigo().lineaActual(), codigo().columnaActual()); };
    for (const auto& sigue : {std::pair(2, 5), std::pair(4, 12), std::pair(2, 5)}) {
        tecla(Qt::Key_F8);
        EXPECT_EQ(lugar(), sigue);
    }
    EXPECT_TRUE(mensaje().contains("'nivle'")) << "what is at the place is told again";
    fotografiar(*ventana, "frmscript-avisos");
    ponerCursor(1);
    tecla(Qt::Key_Return);
    tecla(Qt::Key_F8);
    EXPECT_EQ(lugar(), std::pair(3, 5)) << "places move with their lines";
    codigo().selectAll();
    QTest::keyClicks(&codigo(), "y = MW_1_1_10_status");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(mensaje(), "Guardado.");
    tecla(Qt::Key_F8);
    EXPECT_EQ(mensaje(), "No hay errores ni avisos marcados.");
    codigo().selectAll();
    QTest::keyClicks(&codigo(), "y = = 3");
    tecla(Qt::Key_F7);
    ponerCursor(9);
    tecla(Qt::Key_F8);
    EXPECT_EQ(lugar().first, 1);
    EXPECT_EQ(lugar().second, 5) << "what does not compile goes first";
    codigo().setPlainText(QString::fromUtf8("a = nadie\na = \"cañería\"\n"));
    tecla(Qt::Key_F7);
    EXPECT_TRUE(mensaje().contains("Avisos: 1.")) << "accents are no mistake";
    codigo().setPlainText(QString::fromUtf8("a = nadie\na = \"caÃ±ería\"\n"));
    tecla(Qt::Key_F7);
    EXPECT_TRUE(mensaje().contains("Avisos: 1.")) << "nor is what only begins like UTF-8";
    codigo().setPlainText(QString::fromUtf8("a = nadie\na = \"caÃ±o\"\n"));
    tecla(Qt::Key_F7);
    EXPECT_TRUE(mensaje().contains("Avisos: 2.")) << mensaje().toStdString();
    EXPECT_TRUE(codigo().mensajeDe(2).contains("UTF-8"));
}

TEST_F(Editor, DiceQueTuvoCadaNombreYQueCostoLaUltimaCorrida) {
    abrir("total = MW_1_1_10 * 2 : t = \"<b>uno\" : v = Array(1, 2) : nada = nada\r\n"
          "Sub S : local = 1 : End Sub\r\nS\r\n");
    EXPECT_TRUE(QRegularExpression("^(Corrida: \\d+[.,]\\d\\d ms, [1-9]\\d* KiB)?$")
                    .match(hallar<QLabel>(*ventana, "LblCorrida").text())
                    .hasMatch());
    p.avanzar(3000);
    ASSERT_TRUE(llega([&] { return !hallar<QLabel>(*ventana, "LblCorrida").text().isEmpty(); }));
    EXPECT_TRUE(QRegularExpression("^Corrida: \\d+[.,]\\d\\d ms, [1-9]\\d* KiB$")
                    .match(hallar<QLabel>(*ventana, "LblCorrida").text())
                    .hasMatch())
        << qPrintable(hallar<QLabel>(*ventana, "LblCorrida").text());
    const auto bajoElPuntero = [&](const char* nombre) {
        codigo().moveCursor(QTextCursor::Start);
        if (!codigo().find(nombre)) return QString("not found");
        QTextCursor medio = codigo().textCursor();
        medio.setPosition(medio.position() - 1);
        return codigo().ayudaEn(codigo().cursorRect(medio).center());
    };
    EXPECT_EQ(bajoElPuntero("total"), "total = 232");
    EXPECT_EQ(bajoElPuntero("MW_1_1_10"), "MW_1_1_10 = 116");
    EXPECT_EQ(bajoElPuntero("t ="), "") << "a blank is no name";
    EXPECT_EQ(bajoElPuntero("Array"), "") << "nor is a function";
    EXPECT_EQ(bajoElPuntero("v"), "v = matriz de 2 elementos");
    EXPECT_EQ(bajoElPuntero("local"), "") << "looking makes no variable";
    EXPECT_EQ(p.motor.scriptControl.valorVisibleDe("local"), std::nullopt);
    EXPECT_EQ(p.motor.scriptControl.valorVisibleDe("t"), "\"<b>uno\"");
    EXPECT_EQ(codigo().ayudaEn(codigo().viewport()->rect().bottomRight()), "") << "beside the text";
}

TEST_F(Editor, CompletaElNombreQueSeEscribe) {
    abrir("Sub CalcularNivel\r\nEnd Sub\r\n");
    QListView* hallada = nullptr; // a window of its own
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() == "Propuestas") hallada = qobject_cast<QListView*>(w);
    }
    ASSERT_NE(hallada, nullptr);
    QListView& lista = *hallada;
    const auto propuestas = [&] {
        QStringList textos;
        for (int f = 0; lista.isVisible() && f < lista.model()->rowCount(); ++f)
            textos += lista.model()->index(f, 0).data().toString();
        return textos.join(" ");
    };
    // While proposals stand they get the keys first, as from a keyboard.
    const auto quienOye = [&]() -> QWidget* {
        return lista.isVisible() ? static_cast<QWidget*>(&lista) : &codigo();
    };
    const auto escribir = [&](const char* texto) {
        for (const char* c = texto; *c != 0; ++c)
            QTest::keyClick(quienOye(), *c);
    };
    const auto pulsar = [&](Qt::Key cual) { QTest::keyClick(quienOye(), cual); };
    tecla(Qt::Key_End, Qt::ControlModifier);
    escribir("C");
    EXPECT_EQ(propuestas(), "") << "one letter says nothing";
    escribir("al");
    EXPECT_EQ(propuestas(), "CalcularNivel");
    pulsar(Qt::Key_Return);
    EXPECT_EQ(propuestas(), "");
    EXPECT_TRUE(codigo().texto().endsWith("Cal\n")) << "who has chosen nothing ends a line";
    escribir("mw.r");
    EXPECT_EQ(propuestas(), "READBLOQ");
    pulsar(Qt::Key_Down);
    pulsar(Qt::Key_Return);
    EXPECT_TRUE(codigo().texto().endsWith("mw.READBLOQ")) << qPrintable(codigo().texto());
    escribir(" \"mw_1");
    EXPECT_EQ(propuestas(), "MW_1_1_10 MW_1_1_10_STATUS") << "in a text, names of registers";
    fotografiar(lista, "frmscript-propuestas");
    pulsar(Qt::Key_Escape);
    EXPECT_EQ(propuestas(), "");
    escribir("\"");
    pulsar(Qt::Key_Return);
    escribir("' mw.");
    EXPECT_EQ(propuestas(), "") << "a remark";
    pulsar(Qt::Key_Return);
    escribir("With Label : .Ba");
    EXPECT_EQ(propuestas(), "BackColor");
    tecla(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_TRUE(codigo().texto().endsWith(".BackColor")) << "the only one is taken at once";
}

TEST(Completado, LoQueVieneAlCaso) {
    DireccionesDePlanta planta;
    planta.agregarRegistro(1, 1, "10");
    const auto opciones = [&](std::string_view antes, std::string_view despues = "") {
        std::string todas;
        for (const std::string& o : completarGuion(antes, despues, planta).opciones)
            todas += (todas.empty() ? "" : " ") + o;
        return todas;
    };
    EXPECT_EQ(opciones("x = mw_1_1_10_"), "MW_1_1_10_STATUS");
    EXPECT_EQ(opciones("x = InSt"), "InStr InStrB InStrRev") << "functions of the language";
    EXPECT_EQ(opciones("nivel = 1 : nivelB = 2\nx = NIV"), "nivel nivelB");
    EXPECT_EQ(opciones("Call Lim", "\nSub Limpiar\nEnd Sub"), "Limpiar") << "also from below";
    EXPECT_EQ(opciones("MW . "), "");
    EXPECT_EQ(opciones("mw.Activar_Di"), "Activar_Dir");
    EXPECT_EQ(opciones("otro.writ"), "") << "nobody knows what it has";
    EXPECT_EQ(opciones("With mw\nWith Label\nEnd With\n.wri"), "writeMW");
    EXPECT_EQ(opciones("With mw\nEnd With\n.wri"), "");
    EXPECT_EQ(opciones("x = \"MW_1\" & \"MW_1_1_10_S"), "MW_1_1_10_STATUS");
    EXPECT_EQ(opciones("x = \"Ins"), "") << "in a text nothing but registers";
    for (const char* comentario : {"' mw_1", "x = 1 ' \"mw_1", "Rem mw_1", "x = 1 : rem mw_1"})
        EXPECT_EQ(opciones(comentario), "") << comentario;
    EXPECT_EQ(opciones("' it's \"quoted\nx = mw_1_1_10_"), "MW_1_1_10_STATUS");
    std::string muchos;
    for (int k = 0; k < 1000; ++k)
        muchos += "nombre" + std::to_string(k) + " = 1\n";
    EXPECT_EQ(completarGuion(muchos + "no", "", planta).opciones.size(), Completado::kMaximo);
}

TEST_F(Editor, LaLineaQueFalloQuedaMarcadaHastaQueUnaCorridaAnda) {
    abrir("a = 1\r\nb = 2\r\nc = a / (b - 2)\r\n");
    p.avanzar(2000);
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 3; }));
    EXPECT_EQ(mensaje(),
              QString::fromUtf8("✖ Última corrida: línea 3, columna 1: División por cero"));
    EXPECT_TRUE(p.tramasTiene("División por cero (11)"));
    EXPECT_EQ(codigo().mensajeDe(3).count('\n'), 0);
    ponerCursor(1);
    tecla(Qt::Key_Return);
    EXPECT_EQ(codigo().lineaMarcada(Marca::Corrida), 4) << "the mark goes with its line";
    codigo().undo();
    ponerCursor(2);
    tecla(Qt::Key_End);
    QTest::keyClicks(&codigo(), "0");
    EXPECT_EQ(codigo().lineaMarcada(Marca::Corrida), 3);
    clic(*ventana, "BtnOk");
    EXPECT_EQ(codigo().lineaMarcada(Marca::Corrida), 0) << "what is saved now has not run yet";
    p.avanzar(2000);
    EXPECT_EQ(p.motor.scriptControl.valorDe("b"), 20);
    EXPECT_FALSE(editor.fallaDeLaCorrida().has_value());
    p.archivos.poner(kGuion, "x = 1 / 0");
    p.avanzar(2000);
    EXPECT_FALSE(editor.fallaDeLaCorrida().has_value()) << "that was another text's failure";
    clic(*ventana, "BtnRecargar");
    p.avanzar(2000);
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 1; }));
    p.archivos.poner(kGuion, "x = 2");
    clic(*ventana, "BtnRecargar");
    EXPECT_EQ(codigo().lineaMarcada(Marca::Corrida), 0) << "what was read anew has not run yet";
}

TEST_F(Editor, LaMarcaNoQuedaEnOtraLineaNiElErrorTapaQueSeGuardo) {
    abrir("a = 1\r\nc = 1 / 0\r\nb = 2\r\n");
    p.avanzar(2000);
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 2; }));
    ponerCursor(1);
    tecla(Qt::Key_End);
    QTest::keyClicks(&codigo(), "0");
    tecla(Qt::Key_S, Qt::ControlModifier);
    p.avanzar(2000); // it runs, and fails again
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 2; }));
    EXPECT_TRUE(mensaje().contains("Última corrida"));
    EXPECT_EQ(hallar<QLabel>(*ventana, "LblGuardado").text(), "✔ Guardado");
    ponerCursor(2);
    QTest::keyClick(&codigo(), Qt::Key_Down, Qt::ShiftModifier);
    tecla(Qt::Key_Delete);
    EXPECT_EQ(codigo().lineaMarcada(Marca::Corrida), 0) << "b = 2 has done nothing wrong";
    EXPECT_EQ(hallar<QLabel>(*ventana, "LblGuardado").text(), "");
}

TEST(ErroresDelGuion, CadaTextoDelLenguajeTieneElSuyoYLoAjenoQueda) {
    vbscript::ScriptError error;
    int conTexto = 0;
    for (error.number = 1; error.number < 0x10000; ++error.number) {
        error.description = vbscript::errorText(error.number);
        const bool conocido = error.description != vbscript::errorText(-1);
        const std::string dicho = enCastellano(error);
        EXPECT_NE(dicho, error.description);
        EXPECT_EQ(dicho != "Error desconocido", conocido) << error.number;
        conTexto += conocido ? 1 : 0;
    }
    EXPECT_GT(conTexto, 100);
    for (const auto& [numero, texto, dicho] :
         {std::tuple{13, "Type mismatch: 'Foo'", "Los tipos no coinciden: 'Foo'"},
          {13, "la bomba no responde", "la bomba no responde"},
          {13, "Type mismatch in pump", "Type mismatch in pump"}}) {
        error.number = numero;
        error.description = texto;
        EXPECT_EQ(enCastellano(error), dicho);
    }
    error.budget = true;
    error.number = vbscript::budgetNumber(vbscript::BudgetKind::Steps);
    error.description = vbscript::budgetText(vbscript::BudgetKind::Steps);
    EXPECT_EQ(enCastellano(error), "El guion dio más pasos que los permitidos");
}

TEST_F(Editor, LaMarcaSeVaCuandoElMismoTextoCorreBien) {
    abrir("x = 1 / (MW_1_1_10 - 116)");
    p.avanzar(2000);
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 1; }));
    plc.registros[{1, 0x10}] = 117; // addresses are hexadecimal
    p.avanzar(5000);
    EXPECT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 0; }));
    EXPECT_EQ(mensaje(), "");
}

TEST_F(Editor, ElArchivoCambiadoPorOtroSeDiceYSeElige) {
    abrir("a=1");
    auto& aviso = hallar<QWidget>(*ventana, "AvisoDeCambio");
    EXPECT_FALSE(aviso.isVisible());
    QTest::keyClicks(&codigo(), "x");
    p.archivos.poner(kGuion, "a=2");
    ASSERT_TRUE(llega([&] { return aviso.isVisible(); }));
    clic(*ventana, "BtnOk");
    responder(*ventana, "No guardar");
    EXPECT_EQ(archivo(), "a=2");
    clic(*ventana, "BtnRecargar");
    EXPECT_EQ(codigo().texto(), "a=2\n");
    EXPECT_FALSE(aviso.isVisible());
    QTest::keyClicks(&codigo(), "y");
    p.archivos.poner(kGuion, "a=3");
    ASSERT_TRUE(llega([&] { return aviso.isVisible(); }));
    clic(*ventana, "BtnConservar");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(archivo(), "ya=2\r\n\r\n") << "already chosen, not asked again";
    p.archivos.poner(kGuion, "a=4");
    clic(*ventana, "BtnOk");
    responder(*ventana, "Guardar encima");
    EXPECT_EQ(archivo(), "ya=2\r\n\r\n");
}

TEST_F(Editor, CerrarLaVentanaPreguntaPorLosCambios) {
    abrir("a=1");
    QTest::keyClicks(&codigo(), "z");
    ventana->close();
    responder(*ventana, "Seguir editando");
    ASSERT_TRUE(ventana && ventana->isVisible());
    EXPECT_EQ(archivo(), "a=1");
    ventana->close();
    responder(*ventana, "Guardar");
    EXPECT_TRUE(seCerro());
    EXPECT_EQ(archivo(), "za=1\r\n\r\n");
    reabrir();
    QTest::keyClicks(&codigo(), "z");
    ventana->close();
    responder(*ventana, "Cerrar sin guardar");
    EXPECT_TRUE(seCerro());
    EXPECT_EQ(archivo(), "za=1\r\n\r\n");
    reabrir();
    ventana->close();
    EXPECT_TRUE(seCerro()) << "without changes nothing is asked";
}

TEST_F(Editor, BuscaYReemplazaSinMirarMayusculas) {
    abrir("Caudal = 1\r\ncaudal2 = CAUDAL\r\nx = 5");
    tecla(Qt::Key_F, Qt::ControlModifier);
    auto& buscar = hallar<QLineEdit>(*ventana, "TxtBuscar");
    auto& cuenta = hallar<QLabel>(*ventana, "LblCoincidencias");
    QTest::keyClicks(&buscar, "caudal");
    EXPECT_EQ(codigo().textCursor().selectedText(), "Caudal");
    EXPECT_EQ(cuenta.text(), "1 de 3");
    QTest::keyClick(&buscar, Qt::Key_Return);
    tecla(Qt::Key_F3);
    EXPECT_EQ(codigo().textCursor().selectedText(), "CAUDAL");
    tecla(Qt::Key_F3);
    EXPECT_EQ(cuenta.text(), "1 de 3") << "around the end";
    tecla(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(cuenta.text(), "3 de 3");
    tecla(Qt::Key_H, Qt::ControlModifier);
    QTest::keyClicks(&hallar<QLineEdit>(*ventana, "TxtReemplazo"), "q");
    fotografiar(*ventana, "frmscript-reemplazar");
    clic(*ventana, "BtnReemplazar");
    EXPECT_EQ(codigo().texto(), "Caudal = 1\ncaudal2 = q\nx = 5\n");
    clic(*ventana, "BtnReemplazarTodo");
    EXPECT_EQ(codigo().texto(), "q = 1\nq2 = q\nx = 5\n");
    EXPECT_TRUE(cuenta.text().startsWith("2 "));
    codigo().undo();
    EXPECT_EQ(codigo().texto(), "Caudal = 1\ncaudal2 = q\nx = 5\n") << "one step";
    auto& anterior = hallar<QPushButton>(*ventana, "BtnAnterior");
    anterior.setFocus();
    QTest::keyClick(&anterior, Qt::Key_Return);
    EXPECT_EQ(cuenta.text(), "2 de 2") << "a button is pressed by Enter too";
    QTest::keyClick(&buscar, Qt::Key_Escape);
    EXPECT_FALSE(buscar.isVisible());
}

TEST_F(Editor, LaSangriaSigueALoQueSeEscribe) {
    abrir("");
    QTest::keyClicks(&codigo(), "If a Then");
    tecla(Qt::Key_Return);
    tecla(Qt::Key_Tab);
    QTest::keyClicks(&codigo(), "b = 1");
    tecla(Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&codigo(), "c = 2");
    EXPECT_EQ(codigo().texto(), "If a Then\n    b = 1\n    c = 2");
    codigo().selectAll();
    tecla(Qt::Key_Tab);
    EXPECT_EQ(codigo().texto(), "    If a Then\n        b = 1\n        c = 2");
    tecla(Qt::Key_Backtab);
    EXPECT_EQ(codigo().texto(), "If a Then\n    b = 1\n    c = 2");
    tecla(Qt::Key_G, Qt::ControlModifier);
    QInputDialog* linea = ventana->findChild<QInputDialog*>();
    ASSERT_NE(linea, nullptr);
    linea->setIntValue(2);
    linea->accept();
    EXPECT_EQ(codigo().lineaActual(), 2);
}

TEST_F(Editor, LosBotonesQuedanAbajoYElTextoOcupaElResto) {
    abrir("a=1");
    for (const QSize lado : {QSize(1000, 700), QSize(500, 300)}) {
        ventana->resize(lado);
        ASSERT_TRUE(
            llega([&] { return ventana->size() == lado && codigo().width() > lado.width() - 30; }));
        for (const char* boton : {"BtnOk", "BtnCancelar"}) {
            const QRect r = hallar<QPushButton>(*ventana, boton).geometry();
            EXPECT_LE(ventana->height() - r.bottom(), 12);
            EXPECT_GT(r.top(), codigo().geometry().bottom());
        }
    }
}

TEST_F(Editor, SinLugarParaUnGuionNoHaceNada) {
    reabrir(); // a driver that has not started yet knows no configuration
    EXPECT_EQ(codigo().texto(), "");
    QTest::keyClicks(&codigo(), "a=1");
    clic(*ventana, "BtnOk");
    EXPECT_EQ(mensajeSobre(*ventana), nullptr);
    EXPECT_FALSE(p.archivos.existe(kGuion));
}

TEST_F(Editor, UnArchivoQueNoSePuedeLeerNoSePisa) {
    const std::string enorme(kMaximoDelGuion + 1, 'x');
    abrir(enorme);
    EXPECT_TRUE(codigo().isReadOnly()) << "no more than what runs";
    EXPECT_EQ(mensaje(), QString::fromUtf8(
                             "✖ El guion tiene más de 2 MiB; no se lo puede cambiar desde aquí."));
    tecla(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(archivo().size(), enorme.size());
}

TEST_F(Editor, LoQueElMotorNoCorreriaNoSeGuarda) {
    abrir("a=1\r\n");
    codigo().insertPlainText(
        QString(kMaximoDelGuion / 1024, '\n').replace("\n", QString(1023, '\'') + "\n"));
    clic(*ventana, "BtnOk");
    ASSERT_NE(mensajeSobre(*ventana), nullptr);
    EXPECT_TRUE(mensajeSobre(*ventana)->text().contains(QString::fromUtf8("más de 2 MiB")));
    responder(*ventana, "OK");
    EXPECT_EQ(archivo(), "a=1\r\n");
    EXPECT_TRUE(ventana->isWindowModified());
}

TEST_F(Editor, SeVeBienEnClaroYEnOscuro) {
    abrir("' Nivel del tanque y orden a la bomba\r\nOption Explicit\r\nDim nivel, dosis\r\n\r\n"
          "nivel = MW_1_1_10 / 10\r\n"
          "If MW_1_1_10_STATUS = 6 And nivel < 2.5 Then\r\n"
          "    mw.writeMW \"MW_1_1_10\", 1\r\nEnd If\r\n\r\n"
          "Label.Caption = \"Nivel: \" & nivel & \" m\"\r\n"
          "dosis = nivel / (MW_1_1_10 - 116)   ' falla con 116\r\n");
    p.avanzar(2000);
    ventana->resize(760, 380);
    ASSERT_TRUE(llega([&] { return codigo().lineaMarcada(Marca::Corrida) == 11; }))
        << qPrintable(mensaje());
    fotografiar(*ventana, "frmscript");
    ConPaletaOscura oscura;
    ASSERT_TRUE(llega([&] { return codigo().palette() == QApplication::palette(); }));
    QTest::keyClicks(&codigo(), "If nivel Then nivel = (");
    tecla(Qt::Key_Return);
    tecla(Qt::Key_F, Qt::ControlModifier);
    tecla(Qt::Key_F7);
    EXPECT_EQ(codigo().lineaMarcada(Marca::Comprobacion), 1);
    fotografiar(*ventana, "frmscript-oscura");
}

TEST(TramosDeGuion, CadaCosaEsLoQueEs) {
    const auto clases = [](std::u16string_view linea) {
        std::string s(linea.size(), '.');
        for (const TramoDeGuion& t : tramosDeGuion(linea))
            s.replace(t.desde, t.largo, t.largo, "PVTNC"[static_cast<std::size_t>(t.clase)]);
        return s;
    };
    const std::pair<std::u16string_view, const char*> casos[] = {
        {u"IF a tHen ' si", "PP...PPPP.CCCC"},
        {u"s = \"a\"\"'b\" & 1", "....TTTTTTT...N"},
        {u"mw_1_1_10 = &HFF", "VVVVVVVVV...NNNN"},
        {u"x = .5e-3 : Rem no", "....NNNNN...CCCCCC"},
        {u"o.End = 2: End", "........N..PPP"},
        {u"d = #1/2/2026#", "....NNNNNNNNNN"},
        {u"s = \"sin fin", "....TTTTTTTT"},
        {u"x = .5 Then", "....NN.PPPP"},
        {u"Ifx = a1", "........"},
        {u"n = \u00f1 & \"\u00f1\"", "........TTT"}};
    for (const auto& [linea, esperado] : casos)
        EXPECT_EQ(clases(linea), esperado);
}

} // namespace kv
