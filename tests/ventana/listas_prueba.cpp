// SPDX-License-Identifier: Apache-2.0
// What an operator does with rows: choose several, take them elsewhere, look at them otherwise.

#include "ventana/principal.h"
#include "window/lists/texto_de_filas.h"

#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QMenu>
#include <QSplitter>
#include <QStandardItemModel>

namespace kv {
namespace {

class Listas : public Principal {
  protected:
    void elegirDesdeHasta(int desde, int hasta) {
        QTableView& tabla = variables();
        const auto lugar = [&](int fila) {
            return tabla.visualRect(tabla.model()->index(fila, 1)).center();
        };
        QTest::mouseClick(tabla.viewport(), Qt::LeftButton, {}, lugar(desde));
        QTest::mouseClick(tabla.viewport(), Qt::LeftButton, Qt::ShiftModifier, lugar(hasta));
    }
    QString copiadas() {
        QTest::keyClick(&variables(), Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    }
    void ocultarColumnas(std::initializer_list<int> cuales) {
        auto& columnas = hallar<QMenu>(form, "MnuColumnas");
        emit columnas.aboutToShow();
        for (const int c : cuales)
            columnas.actions()[c]->setChecked(false);
    }
    QString exportado() {
        menu("MnuExportar");
        auto& dialogo = hallar<QFileDialog>(form, "dlgGuardar");
        emit dialogo.fileSelected("/kv/filas.csv");
        const QPointer<QFileDialog> abierto(&dialogo);
        dialogo.close();
        EXPECT_TRUE(llega([&] { return abierto == nullptr; }));
        return QString::fromStdString(p.archivos.contenido("/kv/filas.csv"));
    }
};

} // namespace

TEST_F(Listas, VariasFilasSeCopianConSusTitulosEnLasColumnasQueSeVen) {
    arrancar();
    variables().setFocus();
    ocultarColumnas({3, 4});
    elegirDesdeHasta(1, 2);
    const QStringList renglones = copiadas().split('\n');
    ASSERT_EQ(renglones.size(), 4) << "the last one ends";
    EXPECT_TRUE(renglones[0].startsWith("Direccion\tValor\tEstado"));
    EXPECT_FALSE(renglones[0].contains("Fecha"));
    EXPECT_TRUE(renglones[1].startsWith("1.1.11\t117\tOK"));
    EXPECT_TRUE(renglones[2].startsWith("1.1.1F\t131\tOK"));
}

TEST_F(Listas, SeExportaLoElegidoOLoQueElFiltroDeja) {
    arrancar();
    variables().setFocus();
    ocultarColumnas({3});
    elegirDesdeHasta(0, 1);
    EXPECT_EQ(exportado().count("\r\n"), 3);
    escribir("txtFiltro_lstViewVariables", "^1.2.");
    const QString csv = exportado();
    EXPECT_EQ(csv.count("\r\n"), 2);
    EXPECT_TRUE(csv.startsWith("Direccion;Valor;Estado;")) << qPrintable(csv);
    EXPECT_TRUE(csv.contains("\r\n1.2.10;0;BAD;"));
}

TEST_F(Listas, LoElegidoSigueAunqueOtrasFilasVenganYSeVayan) {
    arrancar();
    elegirDesdeHasta(0, 4);
    escribir("txtFiltro_lstViewVariables", "ok");
    plc.cortar();
    avanzar(7'000); // four rows go
    hallar<QLineEdit>(form, "txtFiltro_lstViewVariables").clear();
    EXPECT_FALSE(variables().selectionModel()->hasSelection()) << "what went is not chosen";
    elegirDesdeHasta(1, 3);
    variables().sortByColumn(0, Qt::DescendingOrder);
    EXPECT_EQ(variables().selectionModel()->selectedRows().size(), 3);
    EXPECT_EQ(copiadas().split('\n')[1].section('\t', 0, 0), "1.1.20");
}

TEST_F(Listas, SeOrdenaConElTeclado) {
    arrancar();
    QTableView& tabla = variables();
    tabla.setFocus();
    QTest::keyClick(&tabla, Qt::Key_Down);
    QTest::keyClick(&tabla, Qt::Key_Right);
    ASSERT_EQ(tabla.currentIndex().column(), 1);
    menu("MnuOrdenar");
    EXPECT_EQ(celda(tabla, 0, 1), "0");
    menu("MnuOrdenar");
    EXPECT_EQ(celda(tabla, 0, 1), "132");
    menu("MnuOrdenar");
    EXPECT_EQ(celda(tabla, 0, 0), "1.1.10") << "as the list has it";
    EXPECT_EQ(hallarAccion("MnuOrdenar").shortcut(), QKeySequence("Ctrl+O"));
}

TEST_F(Listas, LosValoresSeVenEnHexadecimalYEnBinario) {
    arrancar();
    menu("MnuHexadecimal");
    EXPECT_EQ(celda(variables(), 0, 1), "0074");
    menu("MnuBinario");
    EXPECT_EQ(celda(variables(), 0, 1), "0000 0000 0111 0100");
    EXPECT_GE(variables().columnWidth(1),
              variables().fontMetrics().horizontalAdvance("0000 0000 0111 0100"));
    menu("MnuDecimal");
    EXPECT_EQ(celda(variables(), 0, 1), "116");
    EXPECT_EQ(enBase("65536", Base::Hexadecimal), "00010000");
    for (const char* texto : {"-1", "1.5", "nada", "4294967296"})
        EXPECT_EQ(enBase(texto, Base::Binaria), texto);
}

TEST_F(Listas, ColumnasFiltroTamanoYOrdenSeRecuerdan) {
    arrancar();
    variables().setFocus();
    ocultarColumnas({4});
    variables().setColumnWidth(0, 77);
    variables().sortByColumn(0, Qt::DescendingOrder);
    variables().horizontalHeader()->moveSection(1, 2);
    menu("MnuHexadecimal");
    escribir("txtFiltro_lstViewVariables", "^1.1.");
    form.resize(1200, 700);
    hallar<QSplitter>(form, "partesDeListas").setSizes({300, 100});
    const auto partes = hallar<QSplitter>(form, "partesDeListas").sizes();
    form.hide();
    Form1 otra({p.motor.vista, p.motor.sucesos, p.motor.tablas, p.motor.trazas, p.motor.operador,
                editor, mensajero, "9.9", [] {}});
    otra.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&otra));
    auto& tabla = hallar<QTableView>(otra, "lstViewVariables");
    EXPECT_TRUE(tabla.isColumnHidden(4));
    EXPECT_EQ(tabla.columnWidth(0), 77);
    EXPECT_EQ(tabla.horizontalHeader()->visualIndex(1), 2);
    EXPECT_EQ(tabla.model()->rowCount(), 4);
    EXPECT_EQ(celda(tabla, 0, 0), "1.1.20") << "the order holds for the rows";
    EXPECT_EQ(celda(tabla, 3, 1), "0074");
    EXPECT_TRUE(hallar<QLabel>(otra, "lblFilas_lstViewVariables").text().contains("filtrada"))
        << "nobody takes it for all there is";
    EXPECT_EQ(otra.size(), QSize(1200, 700));
    EXPECT_NEAR(hallar<QSplitter>(otra, "partesDeListas").sizes()[0], partes[0], 3);
}

TEST(TextoDeFilas, LoQueEstorbaVaEntreComillas) {
    QStandardItemModel modelo(1, 2);
    modelo.setHorizontalHeaderLabels({"a", "b;c"});
    modelo.setItem(0, 0, hacer<QStandardItem>("di\"jo\ny"));
    modelo.setItem(0, 1, hacer<QStandardItem>("x\ty"));
    EXPECT_EQ(textoDeFilas(modelo, {0}, {0, 1}, ';'), "a;\"b;c\"\r\n\"di\"\"jo\ny\";\"x\ty\"\r\n");
    EXPECT_EQ(textoDeFilas(modelo, {0}, {1, 0}, '\t'), "b;c\ta\nx y\tdi jo y\n");
}

} // namespace kv
