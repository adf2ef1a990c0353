// Trace boxes, their tabs, and the client's window.

#include "ventana/manos.h"
#include "ventana/pantalla.h"
#include "view/clave_de_orden.h"
#include "window/controls/control.h"
#include "window/traces/caja_de_traza.h"
#include "window/traces/fichas.h"

#include <QClipboard>
#include <QFileDialog>
#include <QListView>
#include <QPlainTextEdit>
#include <QToolButton>

#include <algorithm>

namespace kv {
namespace {

class Traza : public testing::Test {
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
    Vista vista;
    CajaDeTraza caja{vista.txtTramas, "Tramas", nullptr};
    QPlainTextEdit& texto{hallar<QPlainTextEdit>(caja, "txtTramas")};
};

class ConFichas : public testing::Test {
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
    [[nodiscard]] int elegida() const {
        const auto todas = tira.selectionModel()->selectedIndexes();
        return todas.size() == 1 ? todas.front().row() : -1;
    }
    Vista vista;
    Fichas fichas{vista.txtTimer, [this](std::size_t i) { return enQt(vista.txtTimer.titulo(i)); },
                  "Bloques", nullptr};
    QListView& tira{hallar<QListView>(fichas, "TabStriptxtTimerPorBloque")};
};

} // namespace

TEST_F(Traza, SigueALaCajaConElCursorAlFinalYSeVaciaConElla) {
    vista.txtTramas.agregar("uno\r\n");
    EXPECT_EQ(visto(), "uno\n");
    vista.txtTramas.agregar("dos\r\n");
    EXPECT_EQ(visto(), "uno\ndos\n");
    EXPECT_TRUE(texto.textCursor().atEnd());
    vista.txtTramas.agregar(std::string(CajaDeTexto::kMaximo - 10, 'x'));
    EXPECT_EQ(visto().size(), int{CajaDeTexto::kMaximo} - 2) << "two line ends";
    vista.txtTramas.agregar("y");
    EXPECT_EQ(visto(), "y") << "one character too many empties it";
}

TEST_F(Traza, SePausaSeCopiaYSeGuardaLoQueSeVe) {
    vista.txtTramas.agregar("uno\r\n");
    EXPECT_EQ(visto(), "uno\n");
    boton("btnPausa");
    vista.txtTramas.agregar("dos\r\n");
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

TEST_F(ConFichas, LaUltimaNuncaQuedaElegida) {
    clicEnFicha(0);
    EXPECT_EQ(fichas.alFrente(), -1) << "the spare one alone";
    for (std::size_t i = 0; i < 3; ++i) {
        vista.txtTimer.usar(i, std::to_string(i + 1));
        vista.txtTimer[i].agregar("caja " + std::to_string(i));
    }
    fichas.refrescar();
    clicEnFicha(1);
    EXPECT_EQ(fichas.alFrente(), 1);
    EXPECT_EQ(hallar<QPlainTextEdit>(fichas, "txtTimer").toPlainText(), "caja 1");
    clicEnFicha(3);
    EXPECT_EQ(elegida(), 2);
    EXPECT_EQ(hallar<QPlainTextEdit>(fichas, "txtTimer").toPlainText(), "caja 2");
    vista.txtTimer.vaciar();
    fichas.refrescar();
    EXPECT_EQ(fichas.alFrente(), -1);
    EXPECT_EQ(hallar<QPlainTextEdit>(fichas, "txtTimer").toPlainText(), "");
}

TEST_F(ConFichas, UnaCajaEnElLugarDeOtraNoSeTomaPorElla) {
    const auto empezar = [this](const char* texto) {
        vista.txtTimer.vaciar();
        for (std::size_t i = 0; i < 2; ++i)
            vista.txtTimer.usar(i, std::to_string(i + 1));
        vista.txtTimer[1].agregar(texto);
        fichas.refrescar();
    };
    empezar("de antes");
    clicEnFicha(1);
    empezar("de ahora");
    EXPECT_EQ(fichas.alFrente(), 1);
    EXPECT_EQ(hallar<QPlainTextEdit>(fichas, "txtTimer").toPlainText(), "de ahora");
}

TEST_F(ConFichas, CadaTituloTieneElLugarQueNecesita) {
    for (std::size_t i = 0; i < 12; ++i)
        vista.txtTimer.usar(i, i == 5 ? "6:  12.34.40001" : std::to_string(i + 1));
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
