// SPDX-License-Identifier: Apache-2.0
#include "window/history/ventana_de_sucesos.h"

#include "window/controls/control.h"
#include "window/controls/elegir_archivo.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/lists/texto_de_filas.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace kv {

VentanaDeSucesos::VentanaDeSucesos(LibroDeSucesos& libro, const Tablas& tablas, QWidget* padre)
    : VentanaAlDia("FrmSucesos", kDeCercaMs, padre), libro_(libro),
      modelo_(hacer<ModeloDeSucesos>(libro, tablas, this)),
      filtro_(control<QLineEdit>("txtFiltroDeSucesos", this)),
      graves_(control<QCheckBox>("chkGraves", tr("&Sólo avisos y alarmas"), this)),
      sinReconocer_(control<QCheckBox>("chkSinReconocer", tr("Sólo sin &reconocer"), this)),
      tabla_(armarTabla()) {
    setWindowTitle(tr("Sucesos"));
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addWidget(armarFiltro());
    todo->addWidget(tabla_, 1);
    todo->addWidget(armarBotones());
    acomodar(*this, {980, 520});
    volverAlLugar(*this);
    prepararVentana(*this);
}

QWidget* VentanaDeSucesos::armarFiltro() {
    auto* arriba = hacer<QWidget>(this);
    auto* fila = hacer<QHBoxLayout>(arriba);
    fila->setContentsMargins(0, 0, 0, 0);
    filtro_->setPlaceholderText(tr("Filtrar…"));
    filtro_->setAccessibleName(tr("Filtro de los sucesos"));
    filtro_->setClearButtonEnabled(true);
    fila->addWidget(filtro_, 1);
    fila->addWidget(graves_);
    fila->addWidget(sinReconocer_);
    connect(filtro_, &QLineEdit::textChanged, this, &VentanaDeSucesos::filtrar);
    for (const QCheckBox* caja : {graves_, sinReconocer_})
        connect(caja, &QCheckBox::toggled, this, &VentanaDeSucesos::filtrar);
    return arriba;
}

QTableView* VentanaDeSucesos::armarTabla() {
    auto* tabla = control<QTableView>("lstSucesos", this);
    tabla->setAccessibleName(tr("Sucesos"));
    tabla->setModel(modelo_);
    tabla->setSelectionBehavior(QAbstractItemView::SelectRows);
    tabla->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tabla->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tabla->setAlternatingRowColors(true);
    tabla->setShowGrid(false);
    tabla->setWordWrap(false);
    tabla->setTabKeyNavigation(false);
    tabla->verticalHeader()->hide();
    tabla->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tabla->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QHeaderView* cabeza = tabla->horizontalHeader();
    cabeza->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    cabeza->setHighlightSections(false);
    // The reason of a failure stands at the end of the line's text, which is why the middle is left
    // out.
    tabla->setTextElideMode(Qt::ElideMiddle);
    constexpr int kMargenDeCelda = 14;
    for (const auto& [columna, larga] :
         {std::pair{ModeloDeSucesos::kHora, QString("00:00:00 00-00-0000")},
          {ModeloDeSucesos::kGravedad, "ooo" + ModeloDeSucesos::tr("aviso") + "ooo"}, // a sign
          {ModeloDeSucesos::kDonde, QString("255.255.255.255:5020")},
          {ModeloDeSucesos::kVeces,
           ModeloDeSucesos::tr("%1, la última %2").arg("1000", "00:00:00")},
          {ModeloDeSucesos::kReconocida, ModeloDeSucesos::tr("Reconocido")}})
        tabla->setColumnWidth(columna, fontMetrics().horizontalAdvance(larga) + kMargenDeCelda);
    cabeza->setSectionResizeMode(ModeloDeSucesos::kQue, QHeaderView::Stretch);
    connect(tabla, &QTableView::doubleClicked, this, [this](const QModelIndex& celda) {
        const Suceso& s = libro_[modelo_->lineaDe(celda.row())].suceso;
        emit irA(s.bloque, s.conexion);
    });
    auto* copia = hacer<QShortcut>(QKeySequence::Copy, tabla);
    copia->setContext(Qt::WidgetShortcut);
    connect(copia, &QShortcut::activated, this, &VentanaDeSucesos::copiar);
    return tabla;
}

QWidget* VentanaDeSucesos::armarBotones() {
    auto* abajo = hacer<QWidget>(this);
    auto* fila = hacer<QHBoxLayout>(abajo);
    fila->setContentsMargins(0, 0, 0, 0);
    const auto boton = [&](const char* nombre, const QString& texto, auto que) {
        auto* b = control<QPushButton>(nombre, texto, this);
        connect(b, &QPushButton::clicked, this, que);
        fila->addWidget(b);
    };
    boton("BtnReconocer", tr("Re&conocer lo elegido"), [this] { reconocer(); });
    boton("BtnReconocerTodo", tr("Reconocer &todo"), [this] {
        libro_.reconocerTodo();
        filtrar();
        emit reconocidos();
    });
    fila->addStretch();
    boton("BtnExportarSucesos", tr("&Exportar como CSV…"), [this] { exportar(); });
    boton("BtnCerrarSucesos", tr("Cerrar"), [this] { close(); });
    return abajo;
}

void VentanaDeSucesos::filtrar() {
    modelo_->filtrar({filtro_->text(), graves_->isChecked(), sinReconocer_->isChecked()});
}

/// Who reads further down goes on reading the same lines.
void VentanaDeSucesos::refrescar() {
    QScrollBar* barra = tabla_->verticalScrollBar();
    const bool arriba = barra->value() == 0;
    const int antes = modelo_->rowCount();
    modelo_->actualizar();
    const int vinieron = modelo_->rowCount() - antes;
    if (!arriba && vinieron > 0) barra->setValue(barra->value() + vinieron);
}

QList<int> VentanaDeSucesos::elegidas() const {
    QList<int> filas;
    for (const QModelIndex& fila : tabla_->selectionModel()->selectedRows())
        filas << fila.row();
    std::sort(filas.begin(), filas.end());
    return filas;
}

void VentanaDeSucesos::reconocer() {
    for (const int fila : elegidas())
        libro_.reconocer(modelo_->lineaDe(fila));
    emit reconocidos();
    if (sinReconocer_->isChecked()) return filtrar();
    modelo_->actualizar();
}

void VentanaDeSucesos::copiar() {
    QList<int> columnas(ModeloDeSucesos::kColumnas);
    std::iota(columnas.begin(), columnas.end(), 0);
    QGuiApplication::clipboard()->setText(textoDeFilas(*modelo_, elegidas(), columnas, '\t'));
}

void VentanaDeSucesos::exportar() {
    QList<int> filas(modelo_->rowCount());
    std::iota(filas.begin(), filas.end(), 0);
    QList<int> columnas(ModeloDeSucesos::kColumnas);
    std::iota(columnas.begin(), columnas.end(), 0);
    elegirArchivo(this, tr("Exportar los sucesos"), "sucesos.csv",
                  [this, texto = textoDeFilas(*modelo_, filas, columnas, ';')](
                      const QString& ruta) { emit guardar(ruta, texto); });
}

} // namespace kv
