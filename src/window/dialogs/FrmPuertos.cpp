// SPDX-License-Identifier: Apache-2.0
#include "window/dialogs/FrmPuertos.h"

#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kv {

FrmPuertos::FrmPuertos(const Operador& operador, QWidget* padre)
    : QDialog(padre), operador_(operador) {
    setObjectName("FrmPuertos");
    setWindowTitle(tr("Puertos"));
    auto* todo = hacer<QVBoxLayout>(this);
    auto* marco = hacer<QGroupBox>(tr("Puertos"), this);
    auto* dentro = hacer<QVBoxLayout>(marco);
    LstViewPuertos_ = control<QTreeWidget>("LstViewPuertos", marco);
    LstViewPuertos_->setAccessibleName(tr("Lista de puertos"));
    LstViewPuertos_->setRootIsDecorated(false);
    LstViewPuertos_->setHeaderLabels({tr("Puerto"), tr("Tiempo de espera (s)"),
                                      tr("Scan por defecto (s)"), tr("Reintentos"),
                                      tr("Descanso (s)"), tr("Bloques")});
    dentro->addWidget(LstViewPuertos_);
    todo->addWidget(marco);
    auto* fila = hacer<QHBoxLayout>();
    fila->addStretch();
    const auto boton = [&](const char* nombre, const QString& texto) {
        auto* nuevo = control<QPushButton>(nombre, texto, this);
        nuevo->setAutoDefault(false);
        fila->addWidget(nuevo);
        return nuevo;
    };
    const std::pair<const char*, QString> sinAccion[] = {{"BtnAgregar", tr("Agregar")},
                                                         {"BtnModificar", tr("Modificar")},
                                                         {"BtnQuitar", tr("Quitar")}};
    for (const auto& [nombre, texto] : sinAccion) {
        auto* inerte = boton(nombre, texto);
        inerte->setEnabled(false); // they have no action, and should not look as if
        inerte->setToolTip(tr("Los puertos se cambian en la configuración"));
    }
    connect(boton("BtnSalir", tr("&Salir")), &QPushButton::clicked, this, &QWidget::close);
    todo->addLayout(fila);
    acomodar(*this, {660, 300});
    prepararVentana(*this);
}

void FrmPuertos::mostrarPuertos() {
    LstViewPuertos_->clear();
    for (const auto& [p, bloques] : operador_.puertos()) {
        QStringList textos;
        for (const double n : {p.numero, p.tiempoFuera, p.scanPorDefecto, p.reintentosMax,
                               p.segReconeccion, static_cast<double>(bloques)})
            textos << QString::number(n);
        LstViewPuertos_->addTopLevelItem(hacer<QTreeWidgetItem>(textos));
    }
    for (int c = 0; c < LstViewPuertos_->columnCount(); ++c)
        LstViewPuertos_->resizeColumnToContents(c);
    alFrente(*this);
}

} // namespace kv
