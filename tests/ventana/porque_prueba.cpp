// SPDX-License-Identifier: Apache-2.0
// What is wrong at a glance, since when, and why: marks, figures, tiles, reasons.

#include "ventana/pantalla.h"
#include "ventana/principal.h"
#include "window/lists/estado_de_fila.h"
#include "window/overview/ventana_de_resumen.h"
#include "window/reasons/barra_de_reparto.h"
#include "window/reasons/ventana_de_conexion.h"
#include "window/reasons/ventana_por_que.h"

#include <QCheckBox>
#include <QListView>
#include <QToolButton>

namespace kv {
namespace {

class Motivos : public Principal {
  protected:
    /// Seconds go by as they do on the screen: a look at the plant in each of them.
    void pasan(int segundos) {
        for (int i = 0; i < segundos; ++i)
            avanzar(1'000);
        avanzar(100); // a round that was under way has ended
    }
    [[nodiscard]] bool destaca(const char* nombre) {
        return hallar<QLabel>(form, nombre).autoFillBackground();
    }
    [[nodiscard]] int columna(const QString& titulo) {
        const QAbstractItemModel& modelo = *variables().model();
        for (int c = 0; c < modelo.columnCount(); ++c) {
            if (modelo.headerData(c, Qt::Horizontal).toString() == titulo) return c;
        }
        return -1;
    }
    [[nodiscard]] QTableView& conexiones() { return hallar<QTableView>(form, "lstViewSockets"); }
    [[nodiscard]] QString estado(int fila) { return celda(variables(), fila, 2); }
    static QString ayuda(const QTableView& tabla, int fila, int columna) {
        return tabla.model()->index(fila, columna).data(Qt::ToolTipRole).toString();
    }
    void dobleClicEn(QTableView& tabla, int fila, int columna) {
        const QPoint lugar = tabla.visualRect(tabla.model()->index(fila, columna)).center();
        QTest::mouseClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseDClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseRelease(tabla.viewport(), Qt::LeftButton, {}, lugar);
    }
    static void callar(Estaciones& quien) {
        quien.demora = [](const Solicitud&) { return std::nullopt; };
    }
    Estaciones& otra = p.en("10.0.0.2");
};

} // namespace

TEST_F(Motivos, CadaVariableDiceCuanViejaEsYDesdeCuandoEstaAsi) {
    arrancar();
    pasan(10);
    const int edad = columna("Última lectura");
    const int desde = columna("En este estado desde");
    ASSERT_GT(edad, 0);
    ASSERT_GT(desde, 0);
    EXPECT_TRUE(celda(variables(), 0, edad).endsWith(" s"))
        << qPrintable(celda(variables(), 0, edad));
    const QString ok = celda(variables(), 0, desde);
    plc.cortar();
    pasan(40);
    EXPECT_EQ(estado(0), "OK") << "the link came up again";
    EXPECT_NE(celda(variables(), 0, desde), ok);
    EXPECT_TRUE(ayuda(variables(), 0, 2).startsWith("OK, leida por ultima vez hace"));
    EXPECT_EQ(ayuda(variables(), 0, 0), "1.1.10") << "only its state has a reason";
}

TEST_F(Motivos, LoQueEnvejeceSeMarcaEnSignoYTexto) {
    arrancar();
    pasan(10);
    EXPECT_FALSE(destaca("lblViejas"));
    // It is on and OK, and nobody has read it for a minute.
    BloqueLectura& b = p.bloque(1);
    p.motor.tablas.ponerPendiente(1, false);
    b.leidoMs -= 60'000;
    form.refrescar();
    EXPECT_EQ(estado(1), "OK (viejo)");
    const QVariant signo = variables().model()->index(1, 2).data(Qt::DecorationRole);
    EXPECT_EQ(signo.value<QIcon>().cacheKey(), senalDeEstado(EstadoDeFila::Vieja).cacheKey());
    EXPECT_EQ(variables().model()->index(1, 2).data(Qt::ForegroundRole).value<QColor>(),
              colorDeEstado(EstadoDeFila::Vieja, qApp->palette()));
    EXPECT_TRUE(ayuda(variables(), 1, 2).startsWith("OK pero vieja"));
}

TEST_F(Motivos, UnaEstacionMudaNoPareceSana) {
    arrancar();
    pasan(5);
    for (const char* cifra : {"lblVariablesBAD", "lblViejas", "lblCalladas", "lblConexionesArriba",
                              "lblSupervisor", "lblGuion"})
        EXPECT_FALSE(destaca(cifra))
            << cifra << ": nothing is wrong, " << qPrintable(rotulo(cifra));
    EXPECT_EQ(celda(conexiones(), 1, 2), "Conectado OK");
    callar(otra);
    pasan(40);
    EXPECT_TRUE(celda(conexiones(), 1, 2).startsWith("Conectado OK, sin respuesta desde 07:0"))
        << qPrintable(celda(conexiones(), 1, 2));
    EXPECT_EQ(conexiones().model()->index(1, 2).data(Qt::DecorationRole).value<QIcon>().cacheKey(),
              senalDeEstado(EstadoDeFila::Descansa).cacheKey());
    for (QTableView* lista : {&conexiones(), &variables()}) {
        for (int c = 0; c < lista->model()->columnCount(); ++c)
            EXPECT_FALSE(lista->isColumnHidden(c)) << "there is room for all of them";
        const int ultima = lista->model()->rowCount() - 1;
        constexpr int kSenal = 26;
        EXPECT_GE(lista->columnWidth(2),
                  lista->fontMetrics().horizontalAdvance(celda(*lista, ultima, 2)) + kSenal)
            << qPrintable(celda(*lista, ultima, 2)) << " is cut";
    }
    EXPECT_EQ(celda(conexiones(), 0, 2), "Conectado OK");
    EXPECT_TRUE(destaca("lblCalladas"));
    EXPECT_TRUE(rotulo("lblCalladas").contains(" 1 "));
    EXPECT_TRUE(destaca("lblVariablesBAD"));
    EXPECT_TRUE(rotulo("lblVariablesBAD").contains("1 de 5"));
    EXPECT_FALSE(destaca("lblConexionesArriba")) << "it is up";
    fotografiar(form, "form1_muda");
    const ConPaletaOscura oscura;
    fotografiar(form, "form1_muda_oscura");
}

TEST_F(Motivos, NingunBloqueDeUnaEstacionMudaPareceSano) {
    arrancar();
    callar(plc);
    pasan(60);
    ASSERT_TRUE(p.motor.tablas.estacionDe(p.bloque(0)).muda);
    const QTableView& lista = bloques();
    const auto signo = [&lista](int fila) {
        return lista.model()->index(fila, 3).data(Qt::DecorationRole).value<QIcon>().cacheKey();
    };
    for (int fila = 0; fila < 4; ++fila)
        EXPECT_EQ(signo(fila), senalDeEstado(EstadoDeFila::Descansa).cacheKey())
            << qPrintable(celda(lista, fila, 3));
    EXPECT_EQ(signo(4), senalDeEstado(EstadoDeFila::Bien).cacheKey());
}

TEST_F(Motivos, LaBarraDiceSiElSupervisorEstaYElGuionAnda) {
    arrancar();
    EXPECT_TRUE(rotulo("lblSupervisor").contains("ninguno"));
    ClienteVisto& cliente = p.motor.vista.servidor.cliente;
    cliente = {"10.0.0.9:40000", p.motor.operador.cifras().ms, true};
    form.refrescar();
    EXPECT_TRUE(rotulo("lblSupervisor").startsWith("Supervisor desde 07:"));
    EXPECT_FALSE(destaca("lblSupervisor"));
    cliente = {{}, p.motor.operador.cifras().ms, false};
    p.motor.vista.lblEstadoScript.colorear(Color::Rojo);
    form.refrescar();
    EXPECT_TRUE(rotulo("lblSupervisor").contains("Sin supervisor desde 07:"));
    EXPECT_TRUE(destaca("lblSupervisor"));
    EXPECT_TRUE(destaca("lblGuion"));
    p.motor.sucesos.decir({.que = Que::EnlaceAbajo, .conexion = 0});
    form.refrescar();
    auto& sucesos = hallar<QToolButton>(form, "btnSinReconocer");
    EXPECT_TRUE(sucesos.isVisible());
    sucesos.click();
    EXPECT_TRUE(hallar<QWidget>(form, "FrmSucesos").isVisible());
}

TEST_F(Motivos, LaVentanaPrincipalDicePorQueFallaElGuion) {
    p.archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", "a = 1\r\nb = 1 / 0\r\n");
    arrancar();
    pasan(2);
    EXPECT_EQ(rotulo("lblEstadoScript"), "✖ Guion con error: línea 2: División por cero");
    EXPECT_TRUE(hallar<QLabel>(form, "lblEstadoScript").toolTip().contains("línea 2"));
}

TEST_F(Motivos, ElDobleClicEnElEstadoDicePorQueYSigueLaFila) {
    arrancar();
    callar(otra);
    pasan(40);
    dobleClicEn(variables(), 4, 2);
    EXPECT_EQ(form.findChild<QDialog*>("FrmEscritura"), nullptr) << "nothing is to be written";
    auto& ventana = *form.findChild<VentanaPorQue*>();
    EXPECT_TRUE(ventana.isVisible());
    EXPECT_EQ(hallar<QLabel>(ventana, "lblPorQue").text(), "1.2.10");
    const auto frase = [&](const char* cual) { return hallar<QLabel>(ventana, cual).text(); };
    EXPECT_TRUE(frase("lblPorQueVariable").startsWith("BAD desde 07:0"))
        << qPrintable(frase("lblPorQueVariable"));
    EXPECT_EQ(frase("lblPorQueEstacion").toStdString(), p.motor.porQue.porQueEstacion(1, 0));
    EXPECT_EQ(frase("lblPorQueConexion").toStdString(), p.motor.porQue.porQueConexion(1));
    fotografiar(ventana, "frmporque");
    variables().setCurrentIndex(variables().model()->index(0, 0));
    EXPECT_EQ(hallar<QLabel>(ventana, "lblPorQue").text(), "1.1.10");
    clic(ventana, "BtnVerConexion");
    EXPECT_EQ(hallar<QLabel>(*form.findChild<VentanaDeConexion*>(), "lblConexion").text(),
              "10.0.0.1:502");
    form.hide();
    EXPECT_FALSE(ventana.isVisible()) << "hidden with the program";
}

TEST_F(Motivos, ElDetalleDeUnaConexionTieneSusCuentas) {
    arrancar();
    callar(otra);
    pasan(60);
    dobleClicEn(conexiones(), 1, 1);
    auto& ventana = *form.findChild<VentanaDeConexion*>();
    ventana.refrescar();
    const auto cifra = [&](const char* cual) { return hallar<QLabel>(ventana, cual).text(); };
    const CuentasDeConexion c = p.motor.contadores.deConexion(1);
    EXPECT_GT(c.vencidos, 0U);
    EXPECT_EQ(cifra("lblVencidos"),
              QString("%1, con %2 reintentos").arg(c.vencidos).arg(c.reintentos));
    EXPECT_EQ(cifra("lblPedidos"),
              QString("%1 pedidos, %2 respuestas").arg(c.pedidos).arg(c.respuestas));
    EXPECT_TRUE(
        hallar<BarraDeReparto>(ventana, "barraDeReparto").enPalabras().contains("silencio"));
    EXPECT_EQ(cifra("lblConexion"), "10.0.0.2:502");
    fotografiar(ventana, "frmconexion");
    auto& estaciones = hallar<QTableView>(ventana, "lstEstaciones");
    EXPECT_EQ(celda(estaciones, 0, 0), "1.2");
    EXPECT_EQ(celda(estaciones, 0, 4), QString::number(c.vencidos));
    // Four blocks a second each, and a pause of 800 ms between two of them.
    dobleClicEn(conexiones(), 0, 1);
    EXPECT_TRUE(cifra("lblScans").startsWith("⚠ 4 no se pueden cumplir"))
        << qPrintable(cifra("lblScans"));
    for (int i = 0; i < 4; ++i)
        p.motor.forzado.ModificarScanDeBloque(i, 60, "prueba");
    ventana.refrescar();
    EXPECT_TRUE(cifra("lblScans").startsWith("se cumplen todos")) << qPrintable(cifra("lblScans"));
    // One reload brings a station, another takes one.
    const auto recargar = [&](Configuracion nueva) {
        p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", nueva.texto());
        p.motor.operador.recargar();
        pasan(2);
        ventana.refrescar();
    };
    const Configuracion dos =
        Configuracion().puerto().estacion(5, "10.0.0.1", 5).estacion(1, "10.0.0.1", 1);
    recargar(Configuracion(dos).bloque(1, "10", "1").bloque(5, "10", "1"));
    EXPECT_EQ(estaciones.model()->rowCount(), 2);
    recargar(Configuracion().puerto().estacion(5, "10.0.0.1", 5).bloque(5, "10", "1"));
    EXPECT_EQ(celda(estaciones, 0, 0), "1.5");
    EXPECT_EQ(estaciones.model()->rowCount(), 1);
}

TEST_F(Motivos, ElResumenTieneUnaFichaPorEstacionYSuClicFiltra) {
    arrancar();
    callar(otra);
    pasan(40);
    menu("MnuResumen");
    auto& ventana = *form.findChild<VentanaDeResumen*>();
    ventana.refrescar();
    auto& fichas = hallar<QListView>(ventana, "lstResumen");
    ASSERT_EQ(fichas.model()->rowCount(), 2);
    const auto dicha = [&](int i) { return fichas.model()->index(i, 0).data().toString(); };
    EXPECT_EQ(dicha(0), "1.1: OK 4   viejas 0   BAD 0");
    EXPECT_EQ(dicha(1), "1.2: OK 0   viejas 0   BAD 1");
    EXPECT_TRUE(rotulo("lblResumen").startsWith("2 estaciones, 1 sin respuesta"));
    fotografiar(ventana, "frmresumen");
    {
        const ConPaletaOscura oscura;
        fotografiar(ventana, "frmresumen_oscura");
    }
    hallar<QCheckBox>(ventana, "chkSoloConProblemas").click();
    ASSERT_EQ(fichas.model()->rowCount(), 1);
    QTest::mouseClick(fichas.viewport(), Qt::LeftButton, {},
                      fichas.visualRect(fichas.model()->index(0, 0)).center());
    EXPECT_EQ(variables().model()->rowCount(), 1);
    EXPECT_EQ(celda(variables(), 0, 0), "1.2.10");
    EXPECT_EQ(conexiones().model()->rowCount(), 1);
    EXPECT_EQ(bloques().model()->rowCount(), 1);
}

TEST(Recuento, UnaPlantaGrandeSeCuentaPorPartesYCompleta) {
    Configuracion config = Configuracion().puerto();
    for (int e = 1; e <= 60; ++e) {
        config.estacion(e, "10.0.0." + std::to_string(e), 1);
        config.bloque(e, "0", "1", true, 256);
    }
    Planta p(config);
    p.arrancar();
    Recuento recuento(p.motor.tablas, p.motor.porQue);
    EXPECT_FALSE(recuento.avanzar()) << "15,360 variables are not looked at in one go";
    EXPECT_TRUE(recuento.estaciones().empty()) << "half a count is none";
    recuento.completar();
    EXPECT_EQ(recuento.estaciones().size(), 60U);
    EXPECT_EQ(recuento.total().bad, 60U * 256);
}

} // namespace kv
