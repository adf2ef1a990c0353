// SPDX-License-Identifier: Apache-2.0
// The main window over a plant: what it shows, and its other windows.

#include "ventana/pantalla.h"
#include "ventana/principal.h"
#include "window/controls/ventana.h"
#include "window/dialogs/FrmPuertos.h"
#include "window/lists/tabla_de_lista.h"
#include "window/script/FrmScript.h"

#include <QAbstractButton>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

namespace kv {

TEST_F(Principal, MuestraLasTresListasYLasCifras) {
    arrancar();
    avanzar(kMuchoMs);
    EXPECT_EQ(rotulo("Label1"), "07:05:10 16-11-2025");
    EXPECT_EQ(rotulo("lblCantidadDePuntos"), "5");
    EXPECT_EQ(celda(variables(), 0, 0), "1.1.10");
    EXPECT_EQ(celda(variables(), 0, 1), "116");
    EXPECT_EQ(celda(variables(), 0, 2), "OK");
    EXPECT_EQ(celda(variables(), 4, 2), "BAD") << "a station that nobody reaches";
    auto& conexiones = hallar<QTableView>(form, "lstViewSockets");
    EXPECT_EQ(celda(conexiones, 0, 1), "10.0.0.1:502");
    EXPECT_EQ(celda(conexiones, 0, 2), "Conectado OK");
    EXPECT_NE(celda(conexiones, 1, 2), "Conectado OK");
    EXPECT_TRUE(rotulo("lblVariablesBAD").contains("1 de 5"));
    EXPECT_TRUE(rotulo("lblConexionesArriba").contains("1 de 2"));
    avanzar(1'000);
    EXPECT_TRUE(rotulo("lblRespuestasPorSegundo").contains("respuestas/s"));
    fotografiar(form, "form1");
    const ConPaletaOscura oscura;
    fotografiar(form, "form1_oscura");
}

TEST_F(Principal, FiltraMientrasSeEscribeYOrdenaComoSeEspera) {
    arrancar();
    auto& tabla = variables();
    escribir("txtFiltro_lstViewVariables", "mw_1_1 ok");
    EXPECT_EQ(tabla.model()->rowCount(), 4) << "every word, in any column";
    plc.cortar();
    avanzar(7'000);
    EXPECT_EQ(tabla.model()->rowCount(), 0) << "a row that does not match any more goes";
    hallar<QLineEdit>(form, "txtFiltro_lstViewVariables").clear();
    tabla.sortByColumn(0, Qt::DescendingOrder);
    EXPECT_EQ(celda(tabla, 0, 0), "1.2.10");
    EXPECT_EQ(celda(tabla, 1, 0), "1.1.20");
    EXPECT_EQ(celda(tabla, 2, 0), "1.1.1F");
    tabla.selectRow(1);
    tabla.sortByColumn(0, Qt::AscendingOrder);
    EXPECT_EQ(tabla.currentIndex().row(), 3) << "the selection stays with its row";
    tabla.sortByColumn(-1, Qt::AscendingOrder);
    EXPECT_EQ(celda(tabla, 0, 0), "1.1.10");
}

TEST(TablaDeLista, LoQueSeVeNoSaltaCuandoUnaFilaDejaElFiltro) {
    Lista lista("lstViewVariables");
    lista.ponerColumnas(Vista().lstViewVariables.columnas());
    for (int i = 0; i < 300; ++i)
        lista.poner(lista.agregar("1.1." + std::to_string(i)), 2, "OK");
    TablaDeLista tabla(lista, formaDeVariables(), "Variables", {}, nullptr);
    tabla.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tabla));
    tabla.seguir(true);
    QTest::keyClicks(&hallar<QLineEdit>(tabla, "txtFiltro_lstViewVariables"), "ok");
    tabla.elegir(0);
    auto& filas = hallar<QTableView>(tabla, "lstViewVariables");
    filas.scrollToBottom();
    const int abajo = filas.verticalScrollBar()->value();
    ASSERT_GT(abajo, 1);
    lista.poner(299, 2, "BAD");
    tabla.refrescar();
    EXPECT_EQ(filas.model()->rowCount(), 299);
    EXPECT_GE(filas.verticalScrollBar()->value(), abajo - 1);
    EXPECT_EQ(filas.currentIndex().row(), 0);
}

TEST_F(Principal, LaFichaDeUnBloqueLoNombra) {
    arrancar();
    hallar<QTabWidget>(form, "fichasDeTrazas").setCurrentIndex(2);
    for (int i = 0; i < 3; ++i) // traces follow at their own pace
        form.refrescar();
    auto& tira = hallar<QListView>(form, "TabStriptxtTimerPorBloque");
    EXPECT_EQ(tira.model()->index(2, 0).data().toString(), "3:  1.1.1F");
    EXPECT_EQ(tira.model()->rowCount(), static_cast<int>(p.motor.tablas.bloques.limiteSuperior()));
}

TEST_F(Principal, LosPuertosSeVenYLaListaSeCierra) {
    arrancar();
    clic(form, "BtnConfig");
    clic(form, "BtnConfig");
    ASSERT_EQ(form.findChildren<FrmPuertos*>().size(), 1);
    auto& puertos = *form.findChild<FrmPuertos*>();
    auto& lista = hallar<QTreeWidget>(puertos, "LstViewPuertos");
    ASSERT_EQ(lista.topLevelItemCount(), 1);
    QStringList textos;
    for (int c = 0; c < lista.columnCount(); ++c)
        textos << lista.topLevelItem(0)->text(c);
    EXPECT_EQ(textos.join(' '), "1 1 5 0 30 5");
    EXPECT_FALSE(puertos.isModal());
    EXPECT_EQ(lista.property(kPropiedadDeAyuda).toInt(), kContextoDeAyuda);
    fotografiar(puertos, "frmpuertos");
    for (const char* boton : {"BtnAgregar", "BtnModificar", "BtnQuitar"})
        EXPECT_FALSE(hallar<QPushButton>(puertos, boton).isEnabled());
    clic(puertos, "BtnSalir");
    EXPECT_FALSE(puertos.isVisible());
}

TEST_F(Principal, ElEstadoDelGuionTieneElFondoQueSeEspera) {
    arrancar();
    auto& estado = hallar<QLabel>(form, "lblEstadoScript");
    EXPECT_EQ(estado.palette().color(QPalette::Window), QColor(0, 255, 0));
    EXPECT_TRUE(estado.autoFillBackground());
    p.motor.vista.lblEstadoScript.colorear(Color::Rojo);
    form.refrescar();
    EXPECT_EQ(estado.palette().color(QPalette::Window), QColor(255, 0, 0));
}

TEST_F(Principal, SeVeYSeOcultaComoDiceVER) {
    arrancar();
    menu("MnuServer");
    ventanas.mirarVisibilidad();
    EXPECT_TRUE(ventanas.servidor().isVisible());
    menu("MnuOcultar");
    ventanas.mirarVisibilidad();
    EXPECT_FALSE(form.isVisible());
    avanzar(5'000);
    ventanas.mirarVisibilidad();
    EXPECT_FALSE(ventanas.servidor().isVisible());
    p.ajuste("VER", "1");
    p.avanzar(5'000);
    ventanas.mirarVisibilidad();
    EXPECT_TRUE(form.isVisible());
}

TEST_F(Principal, SoloElApagadoConfirmadoLaCierra) {
    arrancar();
    form.close();
    EXPECT_TRUE(form.isVisible());
    menu("MnuShutdown");
    ASSERT_NE(mensajeSobre(form), nullptr);
    EXPECT_EQ(mensajeSobre(form)->text(), "Desea Salir?");
    EXPECT_EQ(mensajeSobre(form)->windowTitle(), "Atencion");
    EXPECT_EQ(mensajeSobre(form)->icon(), QMessageBox::Question);
    responder(form, "No");
    EXPECT_EQ(apagados, 0);
    form.close();
    EXPECT_TRUE(form.isVisible());
    menu("MnuShutdown");
    responder(form, enQt("Sí"));
    EXPECT_EQ(apagados, 1);
    EXPECT_TRUE(logTiene("Form1>Salir>"));
    form.close();
    EXPECT_FALSE(form.isVisible());
}

TEST_F(Principal, AlSalirSePreguntaPrimeroPorElGuionSinGuardar) {
    arrancar();
    menu("MnuScript");
    auto* guion = form.findChild<FrmScript*>();
    QTest::keyClicks(&hallar<QPlainTextEdit>(*guion, "TextCodigo"), "a");
    menu("MnuShutdown");
    ASSERT_NE(mensajeSobre(*guion), nullptr);
    responder(*guion, "Seguir editando");
    EXPECT_EQ(mensajeSobre(form), nullptr);
    menu("MnuShutdown");
    responder(*guion, "Cerrar sin guardar");
    EXPECT_TRUE(llega([this] { return form.findChild<FrmScript*>() == nullptr; }));
    ASSERT_NE(mensajeSobre(form), nullptr) << "it has been chosen once";
    EXPECT_EQ(mensajeSobre(form)->text(), "Desea Salir?");
    responder(form, enQt("Sí"));
    EXPECT_EQ(apagados, 1);
}

TEST_F(Principal, LosMenusAbrenLasOtrasVentanasUnaVez) {
    arrancar();
    for (int i = 0; i < 2; ++i) {
        menu("MnuScript");
        menu("MnuAbout");
    }
    EXPECT_EQ(form.findChildren<FrmScript*>().size(), 1);
    ASSERT_EQ(form.findChildren<QDialog*>("FrmAbout").size(), 1);
    const auto* acerca = form.findChild<QDialog*>("FrmAbout");
    EXPECT_EQ(acerca->windowTitle(), "Driver KV2200v1 - About");
    EXPECT_EQ(acerca->windowIcon().cacheKey(), form.windowIcon().cacheKey());
}

TEST_F(Principal, LaVentanaChicaDejaSoloLasListas) {
    arrancar();
    const QSize entera = form.size();
    clic(form, "btnTamañoFormulario");
    EXPECT_TRUE(llega([&] {
        return form.width() < entera.width() * 2 / 3 && form.height() < entera.height() * 2 / 3;
    })) << form.width()
        << " x " << form.height();
    EXPECT_TRUE(variables().isVisible());
    EXPECT_FALSE(hallar<QPushButton>(form, "BtnEnviar").isVisible());
    fotografiar(form, "form1_chica");
    clic(form, "btnTamañoFormulario");
    EXPECT_TRUE(llega([&] { return form.size() == entera; }));
    EXPECT_TRUE(hallar<QPushButton>(form, "BtnEnviar").isVisible());
}

TEST_F(Principal, MensajesDelMotorSinRepetirNiAmontonarse) {
    arrancar();
    for (int i = 0; i < 3; ++i)
        p.motor.vista.mostrarMensaje("siempre lo mismo");
    EXPECT_EQ(mensajero.abiertos(), 1);
    for (int i = 0; i < 100; ++i)
        p.motor.vista.mostrarMensaje("mensaje " + std::to_string(i));
    EXPECT_LE(mensajero.abiertos(), 8);
    EXPECT_EQ(salida.mensajes.size(), 103U) << "all of them are printed";
}

TEST_F(Principal, LoQueVieneDeAfueraSeVeLetraPorLetra) {
    arrancar();
    Vista& vista = p.motor.vista;
    const QString marcas = "<b>uno</b><br>dos";
    for (Etiqueta* etiqueta : {&vista.Label10, &vista.lblProyecto, &vista.lblResultadoBusqueda}) {
        etiqueta->poner(deQt(marcas));
        form.refrescar();
        auto& visto = hallar<QLabel>(form, enQt(etiqueta->nombre()));
        QLabel llano(marcas);
        llano.setTextFormat(Qt::PlainText);
        llano.setFont(visto.font());
        EXPECT_EQ(visto.sizeHint().width(), llano.sizeHint().width()) << etiqueta->nombre();
    }
    const int antes = variables().height();
    vista.Label10.poner(std::string(1U << 20, 'x') + std::string(100, '\n'));
    form.refrescar();
    EXPECT_LE(rotulo("Label10").size(), 1000) << "a script may say more than a line has room for";
    vista.Label10.poner(std::string(900, '\n'));
    form.refrescar();
    QCoreApplication::processEvents();
    EXPECT_GT(variables().height(), antes / 2) << "the lists keep their room";
}

TEST_F(Principal, ElTextoDelGuionSeVisteComoElGuionQuiere) {
    arrancar();
    auto& rotulo10 = hallar<QLabel>(form, "Label10");
    const QColor deVentana = rotulo10.palette().color(QPalette::WindowText);
    const auto vestir = [&](const AspectoDeEtiqueta& aspecto) {
        p.motor.vista.Label10.vestir(aspecto);
        form.refrescar();
        QCoreApplication::processEvents();
    };
    const int boton = hallar<QPushButton>(form, "BtnConfig").x();
    vestir({0x0000FF, 0xFF0000, true});
    EXPECT_TRUE(rotulo10.autoFillBackground());
    EXPECT_EQ(rotulo10.palette().color(QPalette::Window), QColor(255, 0, 0));
    EXPECT_EQ(rotulo10.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    vestir({0x00FFFF, -1, true});
    EXPECT_EQ(rotulo10.palette().color(QPalette::WindowText), QColor(Qt::black)) << "readable";
    vestir({-1, -1, false});
    EXPECT_FALSE(rotulo10.isVisible());
    EXPECT_EQ(hallar<QPushButton>(form, "BtnConfig").x(), boton) << "its place is kept";
    vestir({});
    EXPECT_TRUE(rotulo10.isVisible());
    EXPECT_FALSE(rotulo10.autoFillBackground());
    EXPECT_EQ(rotulo10.palette().color(QPalette::WindowText), deVentana);
}

TEST_F(Principal, ElServidorSeVeSeOcultaYSigue) {
    arrancar();
    p.arranque.abrirServidor();
    menu("MnuServer");
    ventanas.mirarVisibilidad();
    VentanaServidor& servidor = ventanas.servidor();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&servidor));
    avanzar(3'000);
    servidor.refrescar();
    EXPECT_EQ(hallar<QLabel>(servidor, "lblPuertoServidor").text(), "Puerto 1334");
    EXPECT_EQ(hallar<QLabel>(servidor, "lblEstado").text(), "Esperando...");
    EXPECT_TRUE(hallar<QLabel>(servidor, "lblKeepALive").text().startsWith("Intentos: 0 Maximo: "));
    p.motor.sucesos.decir({.que = Que::DelCliente}, "Read;1.1.10;FinRead;");
    p.motor.sucesos.decir({.que = Que::AlCliente}, "[DRI]#1.1.10;116;6;#[/DRI]");
    p.motor.sucesos.decir({.que = Que::AlCliente}, "[DRI]#1.1.11;117;6;#[/DRI]");
    EXPECT_EQ(hallar<QLabel>(servidor, "lblCliente").text(), "Todavía no vino ningún cliente");
    p.motor.vista.servidor.cliente = {"10.0.0.9:40000", p.motor.operador.cifras().ms, false};
    servidor.refrescar();
    EXPECT_EQ(hallar<QPlainTextEdit>(servidor, "Text1").toPlainText(),
              "[DRI]#1.1.10;116;6;#[/DRI]\n[DRI]#1.1.11;117;6;#[/DRI]\n")
        << "one a line";
    const QString quien = hallar<QLabel>(servidor, "lblCliente").text();
    EXPECT_TRUE(quien.startsWith("10.0.0.9:40000, desde 07:")) << qPrintable(quien);
    EXPECT_TRUE(quien.endsWith("sin identificarse"));
    fotografiar(servidor, "frmservertcp");
    servidor.close();
    ventanas.mirarVisibilidad();
    EXPECT_FALSE(servidor.isVisible());
    menu("MnuServer");
    ventanas.mirarVisibilidad();
    clic(servidor, "BtnOcultar");
    ventanas.mirarVisibilidad();
    EXPECT_FALSE(servidor.isVisible());
    EXPECT_EQ(p.motor.servidor.zocalo().estado(), EstadoZocalo::Escuchando);
}

TEST_F(Principal, EnInglesSiSePide) {
    arrancar();
    ponerIdioma("fr");
    EXPECT_EQ(TablaDeLista::tr("%1 de %2"), "%1 de %2");
    const EnIdioma ingles("en");
    Form1 inglesa({p.motor.vista, p.motor.sucesos, p.motor.tablas, p.motor.trazas, p.motor.operador,
                   editor, mensajero, "9.9", [] {}});
    EXPECT_EQ(hallar<QPushButton>(inglesa, "btnForzarLectura").text(), "&Force read");
    EXPECT_EQ(hallar<QToolButton>(inglesa, "btnCopiar").text(), "Copy");
    EXPECT_EQ(hallar<QAction>(inglesa, "MnuResumen").text(), "Overview of &stations");
    EXPECT_EQ(hallar<QTableView>(inglesa, "lstViewVariables").accessibleName(), "Variables");
    EXPECT_EQ(hallar<QTableView>(inglesa, "lstViewSockets").accessibleName(), "Connections");
    menu("MnuScript");
    auto& guion = *form.findChild<FrmScript*>();
    QTest::keyClicks(&hallar<QPlainTextEdit>(guion, "TextCodigo"), "If (");
    clic(guion, "BtnOk");
    EXPECT_TRUE(hallar<QLabel>(guion, "LblMensaje").text().endsWith("Syntax error"))
        << qPrintable(hallar<QLabel>(guion, "LblMensaje").text());
    clic(guion, "BtnCancelar");
}

TEST_F(Principal, CadaLetraConAltEsDeUnoSolo) {
    const auto letras = [](const QWidget& ventana) {
        QStringList textos;
        for (const QAction* menu : ventana.findChild<QMenuBar*>()->actions())
            textos << menu->text();
        for (const auto* boton : ventana.findChildren<QAbstractButton*>())
            if (boton->shortcut() == QKeySequence::mnemonic(boton->text())) textos << boton->text();
        for (const auto* rotulo : ventana.findChildren<QLabel*>())
            if (rotulo->buddy() != nullptr) textos << rotulo->text();
        QString todas;
        for (const QString& texto : textos)
            if (const auto lugar = texto.indexOf('&'); lugar >= 0)
                todas += texto[lugar + 1].toUpper();
        return todas;
    };
    const auto unica = [](QString todas) {
        std::sort(todas.begin(), todas.end());
        return std::adjacent_find(todas.begin(), todas.end()) == todas.end();
    };
    EXPECT_TRUE(unica(letras(form))) << qPrintable(letras(form));
    EXPECT_TRUE(letras(form).contains('T')) << "the size has its key and its letter";
    const EnIdioma ingles("en");
    Form1 inglesa({p.motor.vista, p.motor.sucesos, p.motor.tablas, p.motor.trazas, p.motor.operador,
                   editor, mensajero, "9.9", [] {}});
    EXPECT_TRUE(unica(letras(inglesa))) << qPrintable(letras(inglesa));
}

TEST_F(Principal, CadaControlSeHallaPorSuNombre) {
    for (const char* nombre : {"lstViewSockets",
                               "lstViewVariables",
                               "lstViewEstadoDeBloques",
                               "txtTramas",
                               "txtTramasDescartadas",
                               "txtTimer",
                               "TabStriptxtTimerPorBloque",
                               "txtTimerIpPuerto",
                               "TabStripTimerIpPuerto",
                               "txtTimerEscritura",
                               "Label1",
                               "Label10",
                               "lblCantidadDePuntos",
                               "lblEstadoScript",
                               "lblResultadoBusqueda",
                               "txtDemandaLecturaEscritura",
                               "BtnConfig",
                               "btnForzarLectura",
                               "btnForzarPorNivel",
                               "BtnBuscarDireccion",
                               "btnEscribirValor",
                               "BtnEscribirOtraDireccion",
                               "BtnEscribirOtroValor",
                               "BtnEnviar",
                               "btnTamañoFormulario",
                               "TxtDireccion",
                               "txtForzarNivel",
                               "txtForzarNivelNVeces",
                               "txtBuscarDireccion",
                               "txtValorDeEscritura",
                               "txtDirDePruebas(3)",
                               "txtValoresDePruebas(3)",
                               "MnuDriver"}) {
        const auto* control = form.findChild<QWidget*>(nombre);
        ASSERT_NE(control, nullptr) << nombre;
        EXPECT_EQ(control->property(kPropiedadDeAyuda).toInt(), kContextoDeAyuda) << nombre;
    }
    for (const QLineEdit* caja : form.findChildren<QLineEdit*>()) {
        EXPECT_FALSE(caja->accessibleName().isEmpty()) << qPrintable(caja->objectName());
    }
}

} // namespace kv
