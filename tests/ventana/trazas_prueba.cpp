// SPDX-License-Identifier: Apache-2.0
// Trace boxes, their tabs, and the client's window.

#include "platform/simulated/bucle_simulado.h"
#include "ventana/manos.h"
#include "view/clave_de_orden.h"
#include "view/lista.h"
#include "window/traces/caja_de_traza.h"
#include "window/traces/fichas.h"

#include <QClipboard>
#include <QFileDialog>
#include <QListView>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>

#include <algorithm>

namespace kv {
namespace {

struct Acontecimientos {
    void decir(const std::string& texto) { sucesos.decir({.que = Que::AlCliente}, texto); }
    BucleSimulado bucle;
    Tablas tablas;
    Sucesos sucesos{bucle.reloj()};
    Trazas trazas{sucesos, tablas};
};

class UnaTraza : public testing::Test, protected Acontecimientos {
  protected:
    void SetUp() override {
        caja.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&caja));
    }
    [[nodiscard]] QString visto() {
        caja.refrescar();
        return texto.toPlainText();
    }
    void boton(const char* nombre) {
        QTest::mouseClick(&hallar<QToolButton>(caja, nombre), Qt::LeftButton);
    }
    CajaDeTraza caja{trazas.Text1, "Tramas", nullptr};
    QPlainTextEdit& texto{hallar<QPlainTextEdit>(caja, "Text1")};
};

class ConFichas : public testing::Test, protected Acontecimientos {
  protected:
    void SetUp() override {
        fichas.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&fichas));
    }
    void clicEnFicha(int i) {
        const QModelIndex ficha = tira.model()->index(i, 0);
        tira.scrollTo(ficha);
        QTest::mouseClick(tira.viewport(), Qt::LeftButton, {}, tira.visualRect(ficha).center());
    }
    std::vector<QString> titulos;
    Fichas fichas{{"txtTimer", "TabStriptxtTimerPorBloque", [this] { return titulos.size(); },
                   [this](std::size_t i) { return titulos[i]; },
                   [this](std::size_t i) { return trazas.txtTimerIpPuerto(i); }},
                  "Bloques",
                  nullptr};
    QListView& tira{hallar<QListView>(fichas, "TabStriptxtTimerPorBloque")};
};

} // namespace

TEST_F(UnaTraza, SigueLoQuePasaYDejaQuietoLoQueUnoLee) {
    decir("uno\r\n");
    EXPECT_EQ(visto(), "uno\n");
    decir("dos\r\n");
    EXPECT_EQ(visto(), "uno\ndos\n");
    EXPECT_TRUE(texto.textCursor().atEnd());
    for (int i = 0; i < 200; ++i)
        decir(std::to_string(i) + "\r\n");
    const QString todo = visto();
    EXPECT_TRUE(todo.startsWith("uno\n") && todo.endsWith("\n199\n"));
    texto.verticalScrollBar()->setValue(3);
    decir("mas\r\n");
    EXPECT_EQ(visto(), todo) << "somebody reads";
    EXPECT_EQ(texto.verticalScrollBar()->value(), 3);
    texto.verticalScrollBar()->setValue(texto.verticalScrollBar()->maximum());
    EXPECT_EQ(visto(), todo + "mas\n");
    for (int i = 0; i < 60'000; ++i)
        decir("renglon\r\n");
    EXPECT_GE(visto().size(), int{Traza::kMaximo});
    EXPECT_LT(texto.toPlainText().size(), int{Traza::kMaximo} + 8);
}

TEST_F(UnaTraza, CreceYSeAcortaSinQuedarseCorta) {
    int lineas = 0;
    for (int vez = 0; vez < 60; ++vez) {
        for (int i = 0; i < 1000; ++i)
            decir("renglon\r\n");
        lineas += 1000;
        const auto cuanto = visto().size();
        EXPECT_GE(cuanto, std::min(lineas * 8, int{Traza::kMaximo}) - 8);
        EXPECT_LE(cuanto, 4 * int{Traza::kMaximo} + 8000);
        EXPECT_TRUE(texto.textCursor().atEnd());
    }
}

TEST_F(UnaTraza, LoQueYaNoEstaSeMarcaYLoLeidoQueda) {
    decir("uno\r\n");
    EXPECT_EQ(visto(), "uno\n");
    caja.hide();
    for (std::size_t i = 0; i < Apartados::kMaximo + 1; ++i)
        decir("");
    // So much traffic that the ring has forgotten all of these.
    for (std::size_t i = 0; i < Sucesos::kMaximo + 1024; ++i)
        sucesos.decir({.que = Que::PausaEmpieza, .conexion = 0});
    decir("dos\r\n");
    caja.show();
    EXPECT_TRUE(visto().startsWith("uno\n[...]\n\n"));
    EXPECT_TRUE(texto.toPlainText().endsWith("\ndos\n"));
}

TEST_F(UnaTraza, LoElegidoParaCopiarQuedaElegido) {
    decir("uno\r\n");
    decir("dos\r\n");
    EXPECT_EQ(visto(), "uno\ndos\n");
    QTextCursor eleccion(texto.document());
    eleccion.select(QTextCursor::LineUnderCursor);
    texto.setTextCursor(eleccion);
    decir("tres\r\n");
    EXPECT_EQ(visto(), "uno\ndos\ntres\n");
    EXPECT_EQ(texto.textCursor().selectedText(), "uno");
}

TEST_F(UnaTraza, SePausaSeCopiaYSeGuardaLoQueSeVe) {
    decir("uno\r\n");
    EXPECT_EQ(visto(), "uno\n");
    boton("btnPausa");
    decir("dos\r\n");
    EXPECT_EQ(visto(), "uno\n");
    boton("btnCopiar");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "uno\n");
    QSignalSpy guardada(&caja, &CajaDeTraza::guardar);
    boton("btnGuardar");
    auto& dialogo = hallar<QFileDialog>(caja, "dlgGuardar");
    emit dialogo.fileSelected("/tmp/t.txt");
    ASSERT_EQ(guardada.size(), 1);
    EXPECT_EQ(guardada[0][1].toString(), "uno\r\n");
    dialogo.reject();
    boton("btnPausa");
    EXPECT_EQ(visto(), "uno\ndos\n");
}

TEST_F(ConFichas, CadaUnaMuestraLoSuyo) {
    for (Indice n = 0; n < 3; ++n) {
        titulos.push_back(QString::number(n + 1));
        sucesos.decir({.que = n == 1 ? Que::PausaTermina : Que::PausaEmpieza, .conexion = n});
    }
    fichas.refrescar();
    EXPECT_EQ(fichas.alFrente(), 0);
    clicEnFicha(1);
    EXPECT_EQ(fichas.alFrente(), 1);
    auto& texto = hallar<QPlainTextEdit>(fichas, "txtTimer");
    EXPECT_TRUE(texto.toPlainText().endsWith("HABILITACION A SIGUIENTE POOL\n"));
    EXPECT_EQ(texto.toPlainText().count('\n'), 1);
    clicEnFicha(2);
    EXPECT_TRUE(texto.toPlainText().endsWith("ACTIVACION DE TIMER \n"));
    titulos.clear();
    fichas.refrescar();
    EXPECT_EQ(fichas.alFrente(), -1);
    EXPECT_EQ(texto.toPlainText(), "");
}

TEST_F(ConFichas, CadaTituloTieneElLugarQueNecesita) {
    for (int i = 0; i < 12; ++i)
        titulos.push_back(i == 5 ? "6:  12.34.40001" : QString::number(i + 1));
    fichas.refrescar();
    QCoreApplication::processEvents();
    for (int i = 0; i < 12; ++i) {
        const QModelIndex ficha = tira.model()->index(i, 0);
        EXPECT_GE(tira.visualRect(ficha).width(),
                  tira.fontMetrics().horizontalAdvance(ficha.data().toString()) + 6)
            << i;
    }
}

TEST(Lista, SeBuscaLaPrimeraFilaYUnNuloNoDivideUnTexto) {
    Lista lista("lstViewVariables", true);
    for (const char* texto : {"1.1.10", "1.1.11", "1.1.11"})
        lista.agregar(texto);
    EXPECT_EQ(lista.buscar("1.1.11"), 1);
    EXPECT_EQ(lista.buscar("1.1.12"), -1);
    const std::uint32_t fila = lista.agregar(std::string_view("1.1.1\0F", 7));
    lista.poner(fila, 1, "5");
    EXPECT_EQ(lista.texto(fila, 0), "1.1.1 F");
    EXPECT_EQ(lista.texto(fila, 1), "5");
    EXPECT_EQ(lista.buscar("1.1.1 F"), fila);
}

TEST(Orden, ComoLoEsperaQuienLee) {
    const auto ordenados = [](Especie especie, std::vector<std::string> textos) {
        auto orden = textos;
        std::reverse(orden.begin(), orden.end());
        std::stable_sort(orden.begin(), orden.end(), [&](const auto& a, const auto& b) {
            return claveDeOrden(especie, a) < claveDeOrden(especie, b);
        });
        return orden == textos;
    };
    EXPECT_TRUE(ordenados(Especie::Numero, {"-3", "-2.5", "0", "9", "10", "65535", "nada"}));
    EXPECT_TRUE(ordenados(Especie::Direccion, {"1.1.9", "1.1.F", "1.1.10", "1.1.10.2", "1.1.40001",
                                               "1.2.1", "1.10.1", "2.1.1"}));
    EXPECT_TRUE(ordenados(Especie::Fecha, {"23:59:59 31-12-2025", "00:00:00 01-01-2026",
                                           "00:00:01 01-01-2026", "00:00:00 02-01-2026"}));
    EXPECT_TRUE(ordenados(Especie::Texto, {"10.0.0.9:502", "10.0.0.10:502", "bad", "OK"}));
}

} // namespace kv
