// SPDX-License-Identifier: Apache-2.0
// The commands of the main window: clicked, typed into, double-clicked.

#include "apoyo/carpeta.h"
#include "ventana/principal.h"
#include "window/controls/ventana.h"
#include "window/dialogs/FrmEscritura.h"
#include "window/lists/estado_de_fila.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QPointer>

namespace kv {

TEST_F(Principal, LaBusquedaExactaEligeLaFilaAunqueElFiltroLaTape) {
    arrancar();
    escribir("txtFiltro_lstViewVariables", "1.2.");
    EXPECT_EQ(variables().model()->rowCount(), 1);
    escribir("txtBuscarDireccion", "1.1.1F");
    clic(form, "BtnBuscarDireccion");
    EXPECT_EQ(variables().model()->rowCount(), 5);
    EXPECT_EQ(celda(variables(), variables().currentIndex().row(), 0), "1.1.1F");
    const QString hallada = rotulo("lblResultadoBusqueda");
    EXPECT_TRUE(hallada.startsWith(" Direccion: 1.1.1F\r\n  Valor: ")) << qPrintable(hallada);
    EXPECT_TRUE(hallada.contains("\r\n  Estado: OK\r\n  Validez: "));
    escribir("txtBuscarDireccion", "1.1");
    QTest::keyClick(&hallar<QLineEdit>(form, "txtBuscarDireccion"), Qt::Key_Return);
    EXPECT_TRUE(rotulo("lblResultadoBusqueda").endsWith("\r\nNo existe"));
}

TEST_F(Principal, FuerzaLecturasYNiveles) {
    arrancar();
    escribir("TxtDireccion", "1.1.10");
    clic(form, "btnForzarLectura");
    EXPECT_TRUE(demanda().contains(" Forzado OK 1.1.10\r\n"));
    escribir("TxtDireccion", "1.1");
    clic(form, "btnForzarLectura");
    EXPECT_TRUE(demanda().contains(" NO EXISTE PUERTO O PLC "));
    for (const auto& [nivel, veces, texto] :
         {std::tuple{"a", "1", "Error de Tipo de Dato, en Nivel y/o Cantidad de Poleos\r\nNivel"},
          {"1", " ", "Error de Dato, en Nivel y/o Cantidad de Poleos\r\nVeces"}}) {
        escribir("txtForzarNivel", nivel);
        escribir("txtForzarNivelNVeces", veces);
        clic(form, "btnForzarPorNivel");
        ASSERT_NE(mensajeSobre(form), nullptr);
        EXPECT_EQ(mensajeSobre(form)->text(), texto);
        EXPECT_EQ(mensajeSobre(form)->icon(), QMessageBox::Critical);
        responder(form, "Aceptar");
    }
    escribir("txtForzarNivel", "2");
    escribir("txtForzarNivelNVeces", "3");
    clic(form, "btnForzarPorNivel");
    EXPECT_EQ(celda(bloques(), 1, 4), "FORZANDO POR NIVEL, Cantidad de veces a leer : 3");
    avanzar(kMuchoMs);
    EXPECT_EQ(celda(bloques(), 1, 4), "FORZADO POR NIVEL OK");
    EXPECT_TRUE(logTiene("Form1>Forzar lectura>1.1.10,"));
    EXPECT_TRUE(logTiene("Form1>Forzar nivel>2, veces: 3,"));
}

TEST_F(Principal, LaEvidenciaSeGuardaAparteYDiceQuePaso) {
    arrancar();
    const Carpeta carpeta;
    for (const bool sePuede : {true, false}) {
        const std::string ruta = carpeta.ruta() + (sePuede ? "/e.tar" : "/no/existe.tar");
        menu("MnuEvidencia");
        const QPointer<QFileDialog> dialogo(&hallar<QFileDialog>(form, "dlgGuardar"));
        emit dialogo->fileSelected(enQt(ruta));
        dialogo->close();
        ASSERT_TRUE(llega([&] { return mensajeSobre(form) != nullptr && dialogo == nullptr; }));
        EXPECT_EQ(mensajeSobre(form)->icon() == QMessageBox::Critical, !sePuede);
        const QString texto = mensaje();
        EXPECT_TRUE(texto.contains(enQt(ruta))) << qPrintable(texto);
        EXPECT_TRUE(texto.contains("algo falta")) << qPrintable(texto);
    }
    EXPECT_EQ(carpeta.nombres(), std::set<std::string>{"e.tar"});
    EXPECT_EQ(carpeta.leer("e.tar"), "toda\n");
}

TEST_F(Principal, EscribeValoresDePrueba) {
    arrancar();
    escribir("TxtDireccion", "1.1.10");
    escribir("txtValorDeEscritura", "65535");
    clic(form, "btnEscribirValor");
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x10), 65535);
    EXPECT_NE(auditoria().find(";ventana;1.1.10;"), std::string::npos);
    clic(form, "BtnEscribirOtroValor");
    EXPECT_EQ(linea("txtValorDeEscritura"), "0") << "a word begins again";
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x10), 0);
    escribir("TxtDireccion", "1.1.1F");
    escribir("txtValorDeEscritura", "7");
    clic(form, "BtnEscribirOtraDireccion");
    EXPECT_EQ(linea("TxtDireccion"), "1.1.20") << "registers are hexadecimal";
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x20), 7);
    escribir("TxtDireccion", "1.1.20.3");
    clic(form, "BtnEscribirOtroValor");
    EXPECT_EQ(linea("txtValorDeEscritura"), "0") << "a bit toggles";
    clic(form, "BtnEscribirOtroValor");
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x20), 7 | 8);
    escribir("TxtDireccion", "nada");
    clic(form, "BtnEscribirOtraDireccion");
    EXPECT_EQ(linea("TxtDireccion"), "1.1.40002");
}

TEST_F(Principal, UnIngresoRechazadoNombraSuCampoYNoEscribe) {
    arrancar();
    const std::string antes = auditoria();
    escribir("TxtDireccion", "1.1.10");
    escribir("txtValorDeEscritura", "mucho");
    for (const char* boton :
         {"btnEscribirValor", "BtnEscribirOtraDireccion", "BtnEscribirOtroValor"}) {
        clic(form, boton);
        EXPECT_EQ(mensaje(), "Error de Ingreso\r\nValor: no es un número") << boton;
    }
    escribir("TxtDireccion", "  ");
    escribir("txtValorDeEscritura", "4");
    for (const char* boton :
         {"btnEscribirValor", "BtnEscribirOtraDireccion", "BtnEscribirOtroValor"}) {
        clic(form, boton);
        EXPECT_EQ(mensaje(), "Error de Ingreso\r\nDirección: falta") << boton;
    }
    EXPECT_EQ(linea("txtValorDeEscritura"), "4");
    EXPECT_EQ(linea("TxtDireccion").trimmed(), "");
    for (const char* par : {"(1)", "(3)"}) {
        escribir(("txtDirDePruebas" + std::string(par)).c_str(), "1.1.10");
        escribir(("txtValoresDePruebas" + std::string(par)).c_str(), "x");
    }
    clic(form, "BtnEnviar");
    EXPECT_EQ(mensaje(),
              "Error de Ingreso\r\nValor 2: no es un número\r\nValor 4: no es un número");
    avanzar(kMuchoMs);
    EXPECT_EQ(auditoria(), antes);
    escribir("TxtDireccion", std::string(300, '1').c_str());
    EXPECT_EQ(linea("TxtDireccion").size(), 200);
}

TEST_F(Principal, UnaComaEsUnPuntoDecimal) {
    arrancar();
    escribir("TxtDireccion", "1.1.10");
    escribir("txtValorDeEscritura", "25,0");
    clic(form, "btnEscribirValor");
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x10), 25);
    for (const char* ninguno : {"1.234,5", "1,2,3", ","}) {
        escribir("txtValorDeEscritura", ninguno);
        clic(form, "btnEscribirValor");
        EXPECT_EQ(mensaje(), "Error de Ingreso\r\nValor: no es un número") << ninguno;
    }
}

TEST_F(Principal, EnviaLosParesEnSuOrden) {
    arrancar();
    escribir("txtDirDePruebas(0)", "1.1.11");
    escribir("txtValoresDePruebas(0)", "5");
    escribir("txtDirDePruebas(2)", "1.1.10");
    escribir("txtValoresDePruebas(2)", "6");
    const std::size_t antes = plc.pedidos.size();
    clic(form, "BtnEnviar");
    avanzar(kMuchoMs);
    std::vector<int> escritos;
    for (std::size_t i = antes; i < plc.pedidos.size(); ++i) {
        if (plc.pedidos[i].trama[0] == 0x57) escritos.push_back(plc.pedidos[i].trama[3]);
    }
    EXPECT_EQ(escritos, (std::vector<int>{0x11, 0x10}));
    EXPECT_EQ(plc.valor(1, 0x11), 5);
    EXPECT_EQ(plc.valor(1, 0x10), 6);
}

TEST_F(Principal, LasTildesEnciendenYApaganBloques) {
    arrancar();
    QTest::mouseClick(variables().viewport(), Qt::LeftButton, {}, tilde(variables(), 0));
    EXPECT_FALSE(p.bloque(0).activo);
    EXPECT_FALSE(p.motor.vista.lstViewEstadoDeBloques.tildada(0)) << "both lists follow";
    EXPECT_EQ(variables().model()->index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    const auto senal = [](const QTableView& tabla, int columna) {
        return tabla.model()->index(0, columna).data(Qt::DecorationRole).value<QIcon>().cacheKey();
    };
    const auto apagada = senalDeEstado(EstadoDeFila::Apagada).cacheKey();
    EXPECT_EQ(senal(variables(), 2), apagada) << "before the window has looked at the list again";
    EXPECT_EQ(celda(variables(), 0, 2), "OK (apagado)");
    EXPECT_EQ(senal(bloques(), 3), apagada);
    EXPECT_EQ(celda(bloques(), 0, 3), "SI (apagado)");
    escribir("txtFiltro_lstViewVariables", "apagado");
    EXPECT_EQ(variables().model()->rowCount(), 1);
    hallar<QLineEdit>(form, "txtFiltro_lstViewVariables").clear();
    bloques().selectRow(0);
    QTest::keyClick(&bloques(), Qt::Key_Space);
    EXPECT_TRUE(p.bloque(0).activo);
    EXPECT_TRUE(p.motor.vista.lstViewVariables.tildada(0));
    dobleClic(variables(), tilde(variables(), 0));
    EXPECT_EQ(form.findChild<FrmEscritura*>(), nullptr) << "a double click there opens nothing";
    EXPECT_TRUE(logTiene("Form1>Apagar bloque>1.1.10,"));
    EXPECT_TRUE(logTiene("Form1>Prender bloque>1.1.10,"));
}

TEST_F(Principal, SinFilaElegidaLasTeclasNoTocanNada) {
    arrancar();
    for (const char* ir : {"MnuIrBloques", "MnuIrVariables"}) {
        menu(ir);
        auto& tabla = hallar<QTableView>(
            form, ir == QByteArray("MnuIrBloques") ? "lstViewEstadoDeBloques" : "lstViewVariables");
        ASSERT_EQ(QApplication::focusWidget(), &tabla);
        ASSERT_TRUE(tabla.currentIndex().isValid()) << "the toolkit thinks of a row by itself";
        for (const int tecla : {Qt::Key_Space, Qt::Key_Select, Qt::Key_Return})
            QTest::keyClick(&tabla, static_cast<Qt::Key>(tecla));
        EXPECT_TRUE(p.bloque(0).activo) << ir;
        EXPECT_EQ(form.findChild<QDialog*>(), nullptr);
        QTest::keyClick(&tabla, Qt::Key_Down);
        QTest::keyClick(&tabla, Qt::Key_Space);
        EXPECT_FALSE(p.bloque(1).activo) << "with one chosen it is that one";
        QTest::keyClick(&tabla, Qt::Key_Space);
        EXPECT_TRUE(p.bloque(1).activo);
    }
}

TEST_F(Principal, ElDobleClicAbreLaEscrituraManualOSeNiega) {
    arrancar();
    dobleClic(variables(), 4);
    ASSERT_NE(mensajeSobre(form), nullptr);
    EXPECT_EQ(mensajeSobre(form)->text(), "Imposible. Sin conexion con estacion");
    responder(form, "Aceptar");
    plc.demora = [](const Solicitud& t) {
        return t[3] == 0x10 ? std::nullopt : std::optional<double>(0);
    };
    avanzar(kMuchoMs);
    dobleClic(variables(), 0);
    ASSERT_NE(mensajeSobre(form), nullptr);
    EXPECT_EQ(mensajeSobre(form)->text(), "Imposible. Bloque deshabilitado");
    responder(form, "Aceptar");
    variables().selectRow(1);
    QTest::keyClick(&variables(), Qt::Key_Return);
    auto* dialogo = form.findChild<FrmEscritura*>();
    ASSERT_NE(dialogo, nullptr);
    EXPECT_EQ(hallar<QLineEdit>(*dialogo, "txtPuerto").text(), "1");
    EXPECT_EQ(hallar<QLineEdit>(*dialogo, "TxtPlc").text(), "1");
    EXPECT_EQ(hallar<QLineEdit>(*dialogo, "TxtDireccion").text(), "11");
    EXPECT_EQ(hallar<QLineEdit>(*dialogo, "TxtValor").text(), "117");
    QTest::mouseClick(&hallar<QCheckBox>(*dialogo, "CheckBin(1)"), Qt::LeftButton);
    clic(*dialogo, "BtnOk");
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x11), 119);
}

TEST_F(Principal, ElScanDeUnBloqueSePreguntaSinDetenerElPoleo) {
    arrancar();
    const auto preguntar = [this](const char* respuesta) {
        dobleClic(bloques(), 0);
        auto* pregunta = form.findChild<QInputDialog*>();
        ASSERT_NE(pregunta, nullptr);
        EXPECT_EQ(pregunta->windowTitle(), "ScanTime");
        EXPECT_TRUE(pregunta->labelText().startsWith("Scan Time del Bloque (segundos)\r\n1.1.10/"));
        const std::size_t antes = plc.pedidos.size();
        avanzar(kMuchoMs);
        EXPECT_GT(plc.pedidos.size(), antes) << "polling goes on behind the question";
        pregunta->setTextValue(respuesta);
        QPointer<QInputDialog> abierta = pregunta;
        pregunta->accept();
        EXPECT_TRUE(llega([&] { return abierta == nullptr; }));
    };
    preguntar("2,5");
    EXPECT_EQ(celda(bloques(), 0, 2), "2.5");
    EXPECT_TRUE(logTiene("Form1>Cambiar scan>1.1.10 de 1 a 2.5 s,"));
    preguntar("  ");
    EXPECT_EQ(mensajeSobre(form), nullptr);
    for (const char* mala : {"pronto", "0.0009", "-1", "1e9"}) {
        preguntar(mala);
        EXPECT_TRUE(mensaje().startsWith("Error de Ingreso\r\nScan: ")) << mala;
    }
    EXPECT_EQ(celda(bloques(), 0, 2), "2.5");
    dobleClic(bloques(), 0);
    auto* pregunta = form.findChild<QInputDialog*>();
    pregunta->setTextValue("0");
    pregunta->accept();
    EXPECT_EQ(mensajeSobre(form), nullptr);
    EXPECT_EQ(celda(bloques(), 0, 2), "0: al conectar y al forzar");
    avanzar(kMuchoMs);
    const std::size_t antes = plc.pedidos.size();
    avanzar(kMuchoMs);
    for (std::size_t i = antes; i < plc.pedidos.size(); ++i)
        EXPECT_NE(plc.pedidos[i].trama[3], 0x10);
    plc.registros[{1, 0x10}] = 4321;
    escribir("TxtDireccion", "1.1.10");
    clic(form, "btnForzarLectura");
    avanzar(1'000);
    EXPECT_EQ(celda(variables(), 0, 1), "4321");
}

TEST_F(Principal, LosPuntosContadosSonLosQueHay) {
    arrancar();
    EXPECT_EQ(rotulo("lblCantidadDePuntos"), "5");
    for (const char* nueva : {"1.1.30", "1.1.10.4"}) {
        escribir("TxtDireccion", nueva);
        clic(form, "btnForzarLectura");
        avanzar(1'000);
    }
    EXPECT_EQ(rotulo("lblCantidadDePuntos"), "7");
    EXPECT_EQ(variables().model()->rowCount(), 7);
    p.archivos.poner(
        "/kv/DRIVER_KV2200_Config.ini",
        Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "1").texto());
    p.motor.operador.recargar();
    avanzar(2'000);
    EXPECT_EQ(rotulo("lblCantidadDePuntos"), QString::number(variables().model()->rowCount()));
    EXPECT_EQ(rotulo("lblCantidadDePuntos"), "3") << "what was asked for stays";
}

TEST_F(Principal, ElTabuladorVisitaLasOrdenesEnElOrdenEnQueSeVen) {
    arrancar();
    hallar<QLineEdit>(form, "txtBuscarDireccion").setFocus();
    QStringList visitados;
    for (int i = 0; i < 9; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visitados << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(visitados.join(' '), "BtnBuscarDireccion TxtDireccion btnForzarLectura "
                                   "txtValorDeEscritura btnEscribirValor BtnEscribirOtraDireccion "
                                   "BtnEscribirOtroValor txtForzarNivel txtForzarNivelNVeces");
}

TEST_F(Principal, ConElCandadoSePreguntaAntesDeCadaOrden) {
    arrancar();
    p.ajuste("Candado_De_Ordenes", "1");
    escribir("TxtDireccion", "1.1.20");
    escribir("txtValorDeEscritura", "7");
    escribir("txtForzarNivel", "1");
    escribir("txtForzarNivelNVeces", "-1");
    escribir("txtDirDePruebas(0)", "1.1.20");
    escribir("txtValoresDePruebas(0)", "9");
    const auto pregunta = [&](const QString& que) {
        ASSERT_NE(mensajeSobre(form), nullptr) << qPrintable(que);
        EXPECT_TRUE(mensajeSobre(form)->text().contains(que))
            << qPrintable(mensajeSobre(form)->text());
        responder(form, "No");
    };
    for (const auto& [boton, que] : {std::pair{"btnEscribirValor", "¿Escribir 7 en 1.1.20?"},
                                     {"BtnEscribirOtraDireccion", "1.1.20"},
                                     {"BtnEscribirOtroValor", "1.1.20"},
                                     {"btnForzarLectura", "1.1.20"},
                                     {"btnForzarPorNivel", "nivel 1"},
                                     {"BtnEnviar", "todas"}}) {
        clic(form, boton);
        pregunta(que);
    }
    QTest::mouseClick(variables().viewport(), Qt::LeftButton, {}, tilde(variables(), 0));
    pregunta("Apagar el bloque 1.1.10");
    dobleClic(variables(), 3);
    auto& escritura = *form.findChild<FrmEscritura*>();
    hallar<QLineEdit>(escritura, "TxtValor").setText("8");
    clic(escritura, "BtnOk");
    pregunta("¿Escribir 8 en 1.1.20?");
    EXPECT_TRUE(escritura.isVisible()) << "nothing has been asked for";
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x20), 132) << "nobody said yes";
    EXPECT_TRUE(p.bloque(0).activo);
    clic(escritura, "BtnOk");
    responder(form, enQt("Sí"));
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x20), 8);
    p.ajuste("Candado_De_Ordenes", "0");
    clic(form, "btnEscribirValor");
    EXPECT_EQ(mensajeSobre(form), nullptr) << "open again, at once";
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x20), 7);
}

TEST_F(Principal, UnaDireccionMalEscritaSeOfreceOlvidar) {
    plc.demora = [](const Solicitud& t) {
        return t[3] == 0xEE ? std::nullopt : std::optional<double>(0);
    };
    arrancar();
    escribir("TxtDireccion", "1.1.EE");
    clic(form, "btnForzarLectura");
    form.refrescar();
    EXPECT_EQ(variables().model()->rowCount(), 6);
    for (int i = 0; i < 30 && mensajeSobre(form) == nullptr; ++i)
        avanzar(1'000);
    ASSERT_NE(mensajeSobre(form), nullptr);
    EXPECT_TRUE(mensajeSobre(form)->text().startsWith("1.1.EE no contesta."));
    responder(form, enQt("Sí"));
    form.refrescar();
    EXPECT_EQ(variables().model()->rowCount(), 5);
    const std::size_t pedidos = plc.pedidos.size();
    avanzar(120'000);
    for (std::size_t i = pedidos; i < plc.pedidos.size(); ++i)
        EXPECT_NE(plc.pedidos[i].trama[3], 0xEE) << "nobody asks for it any more";
    EXPECT_TRUE(logTiene("Form1>Olvidar bloque a pedido>1.1.EE,"));
    // What is configured is not forgotten.
    variables().setCurrentIndex(variables().model()->index(0, 0));
    hallar<QAction>(variables(), "accOlvidar").trigger();
    EXPECT_TRUE(mensaje().contains("configuración"));
    EXPECT_EQ(variables().model()->rowCount(), 5);
}

} // namespace kv
