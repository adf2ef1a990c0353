// The main window over a plant: clicked, typed into, double-clicked, and read.

#include "apoyo/planta.h"
#include "ui/qt/FrmEscritura.h"
#include "ui/qt/FrmPuertos.h"
#include "ui/qt/FrmScript.h"
#include "ui/qt/control.h"
#include "ui/qt/idioma.h"
#include "ui/qt/tabla_de_lista.h"
#include "ui/qt/ventana.h"
#include "ui/qt/ventanas.h"
#include "ventana/manos.h"
#include "ventana/pantalla.h"

#include <QAction>
#include <QCheckBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTranslator>
#include <QTreeWidget>

namespace kv {
namespace {

constexpr double kMuchoMs = 20'000;

/// Keeps what the messages say, as the program's own output does.
class Salida final : public Observador {
  public:
    void alAgregar(std::string_view /*caja*/, std::int64_t /*indice*/,
                   std::string_view /*texto*/) override {}
    void alCambiarEtiqueta(std::string_view /*etiqueta*/, std::string_view /*texto*/) override {}
    void alCambiarColor(std::string_view /*etiqueta*/, Color /*color*/) override {}
    void alMostrarMensaje(std::string_view /*titulo*/, std::string_view texto) override {
        mensajes.emplace_back(texto);
    }
    std::vector<std::string> mensajes;
};

class Principal : public testing::Test {
  protected:
    Principal() { p.motor.vista.observar(&mensajero); }
    ~Principal() override { p.motor.vista.observar(nullptr); }

    void arrancar() {
        p.arrancarYConectar();
        p.avanzar(5'000); // every block of the station that is there has been read
        mostrar();
    }
    void mostrar() {
        p.motor.vista.Form1Visible = true;
        ventanas.mirarVisibilidad();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    }
    /// Time passes in the plant, and the window shows what came of it.
    void avanzar(double ms) {
        p.avanzar(ms);
        form.refrescar();
    }
    void escribir(const char* caja, const char* texto) {
        auto& linea = hallar<QLineEdit>(form, caja);
        linea.clear();
        QTest::keyClicks(&linea, texto);
    }
    [[nodiscard]] QString linea(const char* caja) { return hallar<QLineEdit>(form, caja).text(); }
    [[nodiscard]] QString rotulo(const char* nombre) { return hallar<QLabel>(form, nombre).text(); }
    [[nodiscard]] QTableView& variables() { return hallar<QTableView>(form, "lstViewVariables"); }
    [[nodiscard]] QTableView& bloques() {
        hallar<QTabWidget>(form, "fichasDeListas").setCurrentIndex(1);
        return hallar<QTableView>(form, "lstViewEstadoDeBloques");
    }
    [[nodiscard]] static QString celda(const QTableView& tabla, int fila, int columna) {
        return tabla.model()->index(fila, columna).data().toString();
    }
    static void dobleClic(QTableView& tabla, int fila) {
        dobleClic(tabla, tabla.visualRect(tabla.model()->index(fila, 1)).center());
    }
    static void dobleClic(QTableView& tabla, const QPoint& lugar) {
        QTest::mouseClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseDClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseRelease(tabla.viewport(), Qt::LeftButton, {}, lugar);
    }
    [[nodiscard]] static QPoint tilde(const QTableView& tabla, int fila) {
        const QRect todo = tabla.visualRect(tabla.model()->index(fila, 0));
        return {todo.left() + 10, todo.center().y()};
    }
    void menu(const char* accion) { hallarAccion(accion).trigger(); }
    [[nodiscard]] QAction& hallarAccion(const char* accion) {
        auto* hallada = form.findChild<QAction*>(accion);
        if (hallada == nullptr) qFatal("no action named %s", accion);
        return *hallada;
    }
    [[nodiscard]] QString demanda() {
        form.refrescar();
        return enQt(p.motor.vista.txtDemandaLecturaEscritura.texto());
    }
    [[nodiscard]] std::string auditoria() {
        return p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt");
    }
    [[nodiscard]] bool logTiene(const char* que) {
        const std::string log =
            p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
        return log.find(que) != std::string::npos;
    }
    /// The text of the message that stands, which is closed.
    [[nodiscard]] QString mensaje() {
        const QMessageBox* caja = mensajeSobre(form);
        if (caja == nullptr) return "";
        const QString texto = caja->text();
        responder(form, "Aceptar");
        return texto;
    }

    Configuracion config = Configuracion()
                               .puerto({"1", "0", "30"})
                               .estacion(1, "10.0.0.1", 1)
                               .bloque(1, "10", "1")
                               .bloque(1, "11", "1", true, 1, 2)
                               .bloque(1, "1F", "1")
                               .bloque(1, "20", "1")
                               .estacion(2, "10.0.0.2", 2)
                               .bloque(2, "10", "1");
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
    Salida salida;
    Mensajero mensajero{salida};
    EditorDeGuion editor{p.archivos, p.motor.guion};
    int apagados = 0;
    Ventanas ventanas{
        {p.motor.vista, p.motor.operador, editor, mensajero, "9.9", [this] { ++apagados; }}};
    Form1& form{ventanas.principal()};
};

} // namespace

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
    TablaDeLista tabla(lista, formaDeVariables(), "Variables", nullptr);
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
}

TEST_F(Principal, LaFichaDeUnBloqueLoNombra) {
    arrancar();
    hallar<QTabWidget>(form, "fichasDeTrazas").setCurrentIndex(2);
    for (int i = 0; i < 3; ++i) // traces follow at their own pace
        form.refrescar();
    const auto& tira = hallar<QListView>(form, "TabStriptxtTimerPorBloque");
    EXPECT_EQ(tira.model()->index(2, 0).data().toString(), "3:  1.1.1F");
    EXPECT_EQ(tira.model()->index(5, 0).data().toString(), "") << "the spare one";
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
    const auto& estado = hallar<QLabel>(form, "lblEstadoScript");
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
    responder(*guion, "Cerrar sin guardar");
    EXPECT_TRUE(llega([this] { return form.findChild<FrmScript*>() == nullptr; }));
    menu("MnuShutdown");
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
        const auto& visto = hallar<QLabel>(form, enQt(etiqueta->nombre()));
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
    p.motor.vista.servidor.Text2.agregar("16/11/2025 07:05:30[Read;1.1.10;FinRead;]\r\n");
    p.motor.vista.servidor.Text1.agregar("[DRI]#1.1.10;116;6;#[/DRI]");
    servidor.refrescar();
    EXPECT_EQ(hallar<QPlainTextEdit>(servidor, "Text1").toPlainText(),
              "[DRI]#1.1.10;116;6;#[/DRI]");
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
    ponerIdioma("fr");
    EXPECT_EQ(TablaDeLista::tr("%1 de %2"), "%1 de %2");
    ponerIdioma("en");
    Form1 inglesa({p.motor.vista, p.motor.operador, editor, mensajero, "9.9", [] {}});
    EXPECT_EQ(hallar<QPushButton>(inglesa, "btnForzarLectura").text(), "&Force read");
    EXPECT_EQ(hallar<QTableView>(inglesa, "lstViewVariables").accessibleName(), "Variables");
    EXPECT_EQ(hallar<QTableView>(inglesa, "lstViewSockets").accessibleName(), "Connections");
    QCoreApplication::removeTranslator(qApp->findChild<QTranslator*>());
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
