// SPDX-License-Identifier: Apache-2.0
// What is looked at when something went wrong: the history and the trends.

#include "events/fin_de_escritura.h"
#include "ventana/pantalla.h"
#include "ventana/principal.h"
#include "window/help/ventana_de_manual.h"
#include "window/history/recuerdo_de_sucesos.h"
#include "window/history/ventana_de_sucesos.h"
#include "window/trends/ventana_de_tendencias.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QToolButton>

namespace kv {
namespace {

class Vigilando : public Principal {
  protected:
    VentanaDeSucesos& sucesos() {
        menu("MnuSucesos");
        auto& ventana = *form.findChild<VentanaDeSucesos*>();
        ventana.refrescar();
        return ventana;
    }
    VentanaDeTendencias& tendenciasDe(std::initializer_list<int> filas) {
        variables().clearSelection();
        for (const int f : filas)
            variables().selectionModel()->select(variables().model()->index(f, 0),
                                                 QItemSelectionModel::Select |
                                                     QItemSelectionModel::Rows);
        hallar<QAction>(form, "accTendencias").trigger();
        return *form.findChild<VentanaDeTendencias*>();
    }
    /// Seconds go by in the plant, and what the trends are of is looked at as often as it would be.
    void pasan(int segundos) {
        for (int i = 0; i < 2 * segundos; ++i) {
            p.avanzar(500);
            form.findChild<Vigilancia*>()->mirar();
        }
    }
    void elegirArchivo(QWidget& ventana, const char* ruta) {
        QPointer<QFileDialog> dialogo(&hallar<QFileDialog>(ventana, "dlgGuardar"));
        emit dialogo->fileSelected(ruta);
        dialogo->close();
        EXPECT_TRUE(llega([&] { return dialogo == nullptr; }));
    }
    template <class T>
    static QString celdaDe(T& tabla, int fila, int columna) {
        return tabla.model()->index(fila, columna).data().toString();
    }
    static int renglonCon(const QTableView& tabla, const QString& que) {
        for (int f = 0; f < tabla.model()->rowCount(); ++f) {
            if (celdaDe(tabla, f, ModeloDeSucesos::kQue).contains(que)) return f;
        }
        return -1;
    }
};

} // namespace

TEST_F(Vigilando, LaHistoriaTieneLoQuePasoYNoElTrafico) {
    arrancar();
    escribir("TxtDireccion", "1.1.10");
    escribir("txtValorDeEscritura", "5");
    clic(form, "btnEscribirValor");
    avanzar(kMuchoMs);
    EXPECT_EQ(plc.valor(1, 0x10), 5);
    plc.cortar();
    avanzar(60'000);
    p.motor.sucesos.decir({.que = Que::FallaDelGuion}, "guion(3, 1): División por cero");
    auto& ventana = sucesos();
    auto& tabla = hallar<QTableView>(ventana, "lstSucesos");
    EXPECT_EQ(renglonCon(tabla, "confirmada"), -1) << "those have a record of their own";
    const int caida = renglonCon(tabla, "Enlace caido");
    ASSERT_GE(caida, 0);
    EXPECT_EQ(celdaDe(tabla, caida, ModeloDeSucesos::kDonde), "10.0.0.1:502");
    EXPECT_EQ(celdaDe(tabla, caida, ModeloDeSucesos::kGravedad), "alarma");
    EXPECT_EQ(celdaDe(tabla, 0, ModeloDeSucesos::kQue),
              "Falla del guion: guion(3, 1): División por cero")
        << "the latest is on top";
    EXPECT_EQ(renglonCon(tabla, "Envio"), -1);
    EXPECT_LT(tabla.model()->rowCount(), 20);
    fotografiar(ventana, "frmsucesos");
    QTest::keyClicks(&hallar<QLineEdit>(ventana, "txtFiltroDeSucesos"), "10.0.0.1 caido");
    EXPECT_EQ(tabla.model()->rowCount(), 1);
    dobleClic(tabla, 0);
    EXPECT_EQ(hallar<QTableView>(form, "lstViewSockets").currentIndex().row(), 0);
}

TEST_F(Vigilando, LoReconocidoNoReclamaHastaQueVuelvaAPasar) {
    arrancar();
    auto& ventana = sucesos();
    auto& tabla = hallar<QTableView>(ventana, "lstSucesos");
    clic(ventana, "BtnReconocerTodo");
    hallar<QCheckBox>(ventana, "chkSinReconocer").click();
    EXPECT_EQ(tabla.model()->rowCount(), 0);
    const LibroDeSucesos& libro = form.findChild<Vigilancia*>()->libro();
    EXPECT_EQ(libro.sinReconocer(), 0U);
    const Suceso caida{.que = Que::EnlaceAbajo, .conexion = 0};
    for (int i = 0; i < 5; ++i)
        p.motor.sucesos.decir(caida);
    p.motor.sucesos.decir({.que = Que::EnlaceAbajo, .conexion = 1});
    ventana.refrescar();
    ASSERT_EQ(tabla.model()->rowCount(), 2) << "a link that flaps is counted";
    EXPECT_TRUE(celdaDe(tabla, 1, ModeloDeSucesos::kVeces).startsWith("5, la última "));
    EXPECT_EQ(libro.sinReconocer(), 2U);
    tabla.selectRow(1);
    clic(ventana, "BtnReconocer");
    EXPECT_EQ(tabla.model()->rowCount(), 1);
    EXPECT_EQ(libro.sinReconocer(), 1U);
    p.motor.sucesos.decir(caida);
    EXPECT_EQ(libro.sinReconocer(), 2U) << "it happened again";
    avanzar(11 * 60'000);
    p.motor.sucesos.decir(caida);
    EXPECT_GE(libro[libro.siguiente() - 1].veces, 1U);
    EXPECT_EQ(libro[libro.siguiente() - 1].primero, libro[libro.siguiente() - 1].suceso.instante)
        << "another story";
}

TEST_F(Vigilando, F1AbreElManualDondeHablaDeLaVentanaDeDelante) {
    arrancar();
    const auto titulo = [&] {
        auto& texto = hallar<QTextBrowser>(form, "txtManual");
        return texto.textCursor().block().text();
    };
    const auto f1 = [&](QWidget& ventana, QWidget& foco) {
        ventana.activateWindow();
        EXPECT_TRUE(llega([&] { return QApplication::activeWindow() == &ventana; }));
        foco.setFocus();
        QTest::keyClick(&foco, Qt::Key_F1);
    };
    f1(form, hallar<QLineEdit>(form, "TxtDireccion"));
    EXPECT_EQ(titulo(), "La ventana principal");
    f1(form, variables());
    EXPECT_EQ(titulo(), "Las tres listas");
    f1(form, hallar<QPlainTextEdit>(form, "txtTramas"));
    EXPECT_EQ(titulo(), "Las trazas");
    auto& ventana = sucesos();
    f1(ventana, hallar<QTableView>(ventana, "lstSucesos"));
    EXPECT_EQ(titulo(), "Los sucesos");
    auto& texto = hallar<TextoDelManual>(form, "txtManual");
    texto.irA("las-tres-listas");
    EXPECT_EQ(titulo(), "Las tres listas") << "a link of the manual's own";
    fotografiar(hallar<QWidget>(form, "FrmManual"), "frmmanual");
}

TEST(LibroDeSucesos, TieneUnLimiteYLasCuentasLoSiguen) {
    BucleSimulado bucle;
    Sucesos sucesos(bucle.reloj());
    LibroDeSucesos libro(sucesos);
    constexpr std::size_t kMas = LibroDeSucesos::kMaximo + 5'000;
    const std::string largo(5'000, 'x');
    const std::uint64_t cero = libro.siguiente();
    for (std::size_t i = 0; i < kMas; ++i)
        sucesos.decir({.que = Que::FallaDelGuion}, std::to_string(i) + largo);
    EXPECT_EQ(libro.siguiente() - cero, kMas);
    EXPECT_EQ(libro.siguiente() - libro.primera(), LibroDeSucesos::kMaximo);
    EXPECT_EQ(libro.sinReconocer(), LibroDeSucesos::kMaximo);
    EXPECT_LE(libro[libro.primera()].texto.size(), LibroDeSucesos::kTextoMaximo);
    sucesos.decir({.que = Que::FallaDelGuion}, "0" + largo);
    EXPECT_EQ(libro.siguiente() - cero, kMas + 1) << "what has been forgotten is not counted up";
    const auto rechazo = TextoDeRechazo{largo, "fuera de trama", "cliente"}.unir();
    sucesos.decir({.que = Que::EscrituraRechazada, .numero = 7}, rechazo);
    EXPECT_TRUE(fraseDe(libro[cero + kMas + 1], Tablas()).endsWith(" = 7: fuera de trama"))
        << "the reason is what matters";
    // Ten minutes are ten minutes at the end of February, too.
    bucle.relojSimulado().ponerFecha(1'709'251'195); // 29 February 2024, 23:59:55
    sucesos.decir({.que = Que::GuionDetenido});
    bucle.avanzar(599'000);
    sucesos.decir({.que = Que::GuionDetenido});
    EXPECT_EQ(libro[libro.siguiente() - 1].veces, 2U) << "the same story";
    bucle.avanzar(2'000);
    sucesos.decir({.que = Que::GuionDetenido});
    EXPECT_EQ(libro[libro.siguiente() - 1].veces, 1U) << "another";
}

TEST(LibroDeSucesos, LoDiceTodoEnLosDosIdiomas) {
    BucleSimulado bucle;
    Sucesos sucesos(bucle.reloj());
    LibroDeSucesos libro(sucesos);
    Tablas tablas;
    BloqueLectura b;
    b.clave = "1.1.10";
    tablas.bloques.agregar(std::move(b));
    for (unsigned k = 0; k < static_cast<unsigned>(Que::Ultimo); ++k)
        sucesos.decir({.que = static_cast<Que>(k), .detalle = 1, .bloque = 0}, "X");
    constexpr auto kVencida = static_cast<std::int16_t>(FinDeEscritura::Vencida);
    sucesos.decir(
        {.que = Que::EscrituraTerminada, .detalle = kVencida, .bloque = 0, .bit = 3, .numero = 5});
    const auto frases = [&] {
        std::vector<std::string> todas;
        for (std::uint64_t n = libro.primera(); n < libro.siguiente(); ++n)
            todas.push_back(fraseDe(libro[n], tablas).toStdString());
        return todas;
    };
    const auto castellano = frases();
    EXPECT_EQ(castellano.back(), "Escritura de 1.1.10.3 = 5: espero demasiado");
    const EnIdioma enIngles("en");
    const auto ingles = frases();
    EXPECT_EQ(ingles.back(), "Write of 1.1.10.3 = 5: it waited too long");
    for (std::size_t i = 0; i < ingles.size(); ++i) {
        EXPECT_NE(ingles[i], castellano[i]);
        EXPECT_EQ(castellano[i].find('%'), std::string::npos) << castellano[i];
    }
}

TEST_F(Vigilando, LoQuePasoYLoReconocidoSobrevivenAlPrograma) {
    arrancar();
    p.motor.sucesos.decir({.que = Que::EnlaceAbajo, .conexion = 0});
    p.motor.sucesos.decir({.que = Que::FallaDelGuion}, "guion(3, 1):\tDivisión\npor cero");
    auto& ventana = sucesos();
    auto& tabla = hallar<QTableView>(ventana, "lstSucesos");
    tabla.selectRow(renglonCon(tabla, "Enlace caido"));
    clic(ventana, "BtnReconocer");
    const auto reconocida = [](QTableView& t, const QString& que) {
        return celdaDe(t, renglonCon(t, que), ModeloDeSucesos::kReconocida);
    };
    const auto todas = [](const QTableView& t) {
        QStringList celdas;
        for (int f = 0; f < t.model()->rowCount(); ++f)
            celdas
                << celdaDe(t, f, ModeloDeSucesos::kHora) + celdaDe(t, f, ModeloDeSucesos::kDonde) +
                       celdaDe(t, f, ModeloDeSucesos::kQue).replace('\t', ' ').replace('\n', ' ');
        return celdas;
    };
    // Killed at once: nothing of it ends in order. Another start, of a plant with other numbers.
    Planta segunda{config};
    EditorDeGuion otroEditor{segunda.archivos, segunda.motor.guion, segunda.motor.scriptControl,
                             segunda.motor.tablas};
    Form1 otra({segunda.motor.vista, segunda.motor.sucesos, segunda.motor.tablas,
                segunda.motor.trazas, segunda.motor.operador, otroEditor, mensajero, "9.9", [] {}});
    segunda.arrancarYConectar();
    const LibroDeSucesos& libro = otra.findChild<Vigilancia*>()->libro();
    otra.findChild<Vigilancia*>()->abrirSucesos();
    auto& despues = hallar<QTableView>(*otra.findChild<VentanaDeSucesos*>(), "lstSucesos");
    EXPECT_EQ(todas(despues).mid(despues.model()->rowCount() - tabla.model()->rowCount()),
              todas(tabla))
        << qPrintable(todas(despues).join('\n'));
    EXPECT_EQ(reconocida(despues, "Enlace caido"), "sí");
    EXPECT_EQ(reconocida(despues, "Falla del guion"), "");
    EXPECT_GE(libro.sinReconocer(), 1U);
    dobleClic(despues, renglonCon(despues, "Enlace caido")); // it is nowhere now
    segunda.motor.sucesos.decir({.que = Que::EnlaceAbajo, .conexion = 0});
    EXPECT_GT(libro.sinReconocer(), 1U) << "it happened again: another line";
}

TEST(LibroDeSucesos, LoRecordadoTieneUnLimiteYLoRotoSePasaPorAlto) {
    BucleSimulado bucle;
    Sucesos sucesos(bucle.reloj());
    LibroDeSucesos libro(sucesos);
    QByteArray recuerdo("\n\t\t\n1\t1\t1\t9\t0\ta\tb\n-1\t1\t1\t1\t0\ta\tb\n\xFF\xFE\n");
    volverAPoner(libro, recuerdo + QByteArray(100'000, '\t'));
    EXPECT_EQ(libro.primera(), libro.siguiente());
    for (int i = 0; i < 3'000; ++i)
        recuerdo += "1\t1\t1\t2\t0\tdonde\t" + QByteArray::number(i) + "\n";
    volverAPoner(libro, recuerdo);
    EXPECT_EQ(libro.siguiente() - libro.primera(), LibroDeSucesos::kDeAntes);
    EXPECT_EQ(fraseDe(libro[libro.siguiente() - 1], Tablas()), "2999") << "the latest ones";
    EXPECT_EQ(libro.sinReconocer(), LibroDeSucesos::kDeAntes);
    EXPECT_EQ(comoRecuerdo(libro, Tablas()).count('\n'), LibroDeSucesos::kDeAntes);
}

TEST_F(Vigilando, LasTrazasDeUnaSolaConexionODeUnSoloBloque) {
    p.en("10.0.0.2");
    arrancar();
    avanzar(10'000);
    auto& texto = hallar<QPlainTextEdit>(form, "txtTramas");
    const auto visto = [&] {
        for (int i = 0; i < 3; ++i) // traces follow at their own pace
            form.refrescar();
        return texto.toPlainText();
    };
    EXPECT_TRUE(visto().contains("1.2.10 Envio") && visto().contains("1.1.11 Envio"));
    variables().setCurrentIndex(variables().model()->index(1, 0));
    hallar<QAction>(variables(), "accSoloBloque").trigger();
    EXPECT_TRUE(visto().contains("1.1.11 Envio"));
    EXPECT_FALSE(visto().contains("1.1.10 Envio") || visto().contains("1.2.10 Envio"));
    p.avanzar(5'000);
    EXPECT_FALSE(visto().contains("1.1.10 Envio")) << "what comes is filtered, too";
    auto& caja = *texto.parentWidget();
    auto& solo = hallar<QToolButton>(caja, "btnSolo");
    EXPECT_EQ(solo.text(), "✖ sólo 1.1.11");
    QTest::mouseClick(&hallar<QToolButton>(caja, "btnGuardar"), Qt::LeftButton);
    elegirArchivo(caja, "/kv/traza.txt");
    EXPECT_EQ(QString::fromStdString(p.archivos.contenido("/kv/traza.txt")).remove('\r'),
              texto.toPlainText())
        << "saved as it is filtered";
    auto& conexiones = hallar<QTableView>(form, "lstViewSockets");
    conexiones.setCurrentIndex(conexiones.model()->index(1, 0));
    hallar<QAction>(conexiones, "accSoloConexion").trigger();
    EXPECT_TRUE(visto().contains("1.2.10 Envio"));
    EXPECT_FALSE(visto().contains("1.1.11 Envio"));
    solo.click();
    EXPECT_FALSE(solo.isVisible());
    EXPECT_TRUE(visto().contains("1.1.11 Envio"));
}

TEST_F(Vigilando, LasTendenciasMuestranElPasadoYLoQueFueBAD) {
    arrancar();
    auto& ventana = tendenciasDe({0, 1});
    for (const int valor : {55, 100}) { // and nobody looks in between
        plc.registros[{1, 0x10}] = valor;
        p.avanzar(4'000);
    }
    for (int i = 0; i < 40; ++i) {
        plc.registros[{1, 0x10}] = 100 + i * 3; // hexadecimal addresses
        plc.registros[{1, 0x11}] = 1000 - (i % 7) * 50;
        if (i == 20) plc.cortar();
        pasan(5);
    }
    ventana.refrescar();
    auto& lienzo = hallar<LienzoDeTendencias>(ventana, "lienzo");
    fotografiar(ventana, "frmtendencias");
    {
        const ConPaletaOscura oscura;
        fotografiar(ventana, "frmtendencias_oscura");
    }
    QStringList dicho;
    for (int x = 0; x < lienzo.width(); ++x)
        dicho << lienzo.valoresEn({x, 40});
    EXPECT_TRUE(dicho.join(' ').contains("BAD"));
    EXPECT_TRUE(dicho.join(' ').contains("1.1.11: 1000"));
    EXPECT_TRUE(dicho.join(' ').contains("1.1.10: 55"));
    clic(ventana, "BtnPausaDeTendencias");
    const auto hasta = lienzo.hasta();
    pasan(10);
    ventana.refrescar();
    EXPECT_EQ(lienzo.hasta(), hasta) << "held still";
    clic(ventana, "BtnGuardarImagen");
    elegirArchivo(ventana, "/kv/t.png");
    EXPECT_TRUE(p.archivos.contenido("/kv/t.png").starts_with("\x89PNG"));
    clic(ventana, "BtnGuardarTabla");
    elegirArchivo(ventana, "/kv/t.csv");
    const QString csv = QString::fromStdString(p.archivos.contenido("/kv/t.csv"));
    EXPECT_TRUE(
        csv.startsWith("Hora;1.1.10;1.1.10 estado;1.1.11;1.1.11 estado\r\n16/11/2025 07:0"));
    EXPECT_TRUE(csv.contains(";BAD;"));
    EXPECT_GT(csv.count("\r\n"), 30);
}

TEST_F(Vigilando, LasTendenciasElegidasVuelvenConElProgramaYSeQuitan) {
    arrancar();
    auto& ventana = tendenciasDe({0, 4});
    Form1 otra({p.motor.vista, p.motor.sucesos, p.motor.tablas, p.motor.trazas, p.motor.operador,
                editor, mensajero, "9.9", [] {}});
    auto* vigilancia = otra.findChild<Vigilancia*>();
    vigilancia->mirar();
    vigilancia->abrirTendencias();
    auto& quitar = hallar<QMenu>(*otra.findChild<VentanaDeTendencias*>(), "MnuQuitar");
    emit quitar.aboutToShow();
    ASSERT_EQ(quitar.actions().size(), 2);
    EXPECT_EQ(quitar.actions()[1]->text(), "1.2.10");
    quitar.actions()[1]->trigger();
    emit quitar.aboutToShow();
    EXPECT_EQ(quitar.actions().size(), 1);
    EXPECT_TRUE(ventana.isVisible());
}

namespace {

/// A list of variables, and a clock that is moved by hand.
struct ConRegistro {
    ConRegistro() {
        for (std::size_t i = 0; i <= RegistroDeTendencias::kSeries; ++i)
            lista.tildar(lista.agregar("1.1." + std::to_string(i)), true);
        for (std::uint32_t i = 0; i < RegistroDeTendencias::kSeries; ++i)
            EXPECT_TRUE(registro.agregar(i));
    }
    void leer(std::uint32_t fila, double valor, const char* estado = "OK") {
        lista.poner(fila, 1, std::to_string(valor));
        lista.poner(fila, 2, estado);
    }
    Lista lista{"lstViewVariables", true};
    std::int64_t ms = 1'000'000;
    RegistroDeTendencias registro{lista, [this] { return ms; }};
    [[nodiscard]] const Serie& primera() const { return registro.series()[0]; }
    [[nodiscard]] const Serie& segunda() const { return registro.series()[1]; }
};

} // namespace

TEST(RegistroDeTendencias, TomaCadaCambioCuandoPasa) {
    ConRegistro c;
    EXPECT_TRUE(c.registro.agregar(0)) << "it is there";
    EXPECT_FALSE(c.registro.agregar(RegistroDeTendencias::kSeries));
    c.leer(1, 7);
    for (int i = 0; i < 100; ++i, c.ms += 10) {
        c.leer(0, i, i % 10 == 9 ? "BAD" : "OK");
        c.lista.poner(8, 1, "99"); // nobody chose it
    }
    EXPECT_EQ(c.primera().muestras.size(), 100U) << "between two looks, and no halves of them";
    EXPECT_EQ(c.primera().en(c.ms - 10)->valor, 99);
    EXPECT_FALSE(c.primera().en(c.ms - 10)->ok);
    EXPECT_TRUE(c.primera().en(c.ms - 20)->ok);
    EXPECT_EQ(c.segunda().muestras.size(), 1U) << "what does not change takes no room";
    c.lista.tildar(1, false);
    EXPECT_FALSE(c.segunda().en(c.ms)->ok) << "switched off: nobody knows what it is";
    EXPECT_TRUE(c.segunda().en(c.ms - 1)->ok);
    // It is configured anew: another row.
    c.lista.retirar(1);
    c.ms += 1'000;
    const std::uint32_t otra = c.lista.agregar("1.1.1");
    c.lista.tildar(otra, true);
    c.registro.mirar();
    c.leer(otra, 8);
    EXPECT_EQ(c.segunda().en(c.ms)->valor, 8);
    c.ms += RegistroDeTendencias::kVidaMs + 1'000;
    c.leer(0, -1);
    c.registro.mirar();
    EXPECT_LE(c.primera().muestras.size(), 2U) << "older than anybody asks for";
}

TEST(RegistroDeTendencias, UnaHoraEnteraYLoMasRapidoComoSeVeria) {
    ConRegistro c;
    constexpr int kCuatroHorasDe50Ms = 4 * 3'600 * 20;
    const std::int64_t inicio = c.ms;
    std::size_t mas = 0;
    for (int i = 0; i < kCuatroHorasDe50Ms; ++i, c.ms += 50) {
        const bool pico = i == 1'000; // one of 50 ms, four hours ago
        const bool mal = i == 2'000;
        c.leer(0, pico ? 9'999 : i % 2, mal ? "BAD" : "OK");
        if (i % 10 == 0) c.leer(1, i);
        mas = std::max(mas, c.primera().muestras.size());
    }
    EXPECT_LE(mas, 41'000U);
    EXPECT_LE(c.primera().muestras.front().ms, inicio + 2'000);
    const auto hay = [&](std::int64_t desde, auto como) {
        return std::any_of(
            c.primera().muestras.begin(), c.primera().muestras.end(),
            [&](const Muestra& m) { return std::abs(m.ms - desde) < 10'000 && como(m); });
    };
    EXPECT_TRUE(hay(inicio + 50'000, [](const Muestra& m) { return m.valor == 9'999; }));
    EXPECT_TRUE(hay(inicio + 100'000, [](const Muestra& m) { return !m.ok; }));
    // One in half a second: nothing of the last hour is missing.
    for (std::int64_t ms = c.ms - 3'590'000; ms < c.ms - 500; ms += 500)
        ASSERT_EQ(c.segunda().en(ms)->ms / 500, ms / 500);
}

} // namespace kv
