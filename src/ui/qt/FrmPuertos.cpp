#include "ui/qt/FrmPuertos.h"

#include "ui/qt/control.h"
#include "ui/qt/ventana.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kv {

FrmPuertos::FrmPuertos(QWidget* padre) : QDialog(padre) {
    setObjectName("FrmPuertos");
    setWindowTitle(tr("Puertos"));
    auto* todo = hacer<QVBoxLayout>(this);
    auto* marco = hacer<QGroupBox>(tr("Puertos"), this);
    auto* dentro = hacer<QVBoxLayout>(marco);
    LstViewPuertos_ = control<QTreeWidget>("LstViewPuertos", marco);
    LstViewPuertos_->setAccessibleName(tr("Lista de puertos"));
    LstViewPuertos_->setRootIsDecorated(false);
    LstViewPuertos_->setHeaderLabels({tr("Puerto")});
    dentro->addWidget(LstViewPuertos_);
    todo->addWidget(marco);
    auto* nota = hacer<QLabel>(
        tr("Los puertos configurados se ven en la lista de conexiones de la ventana principal."),
        this);
    nota->setWordWrap(true);
    todo->addWidget(nota);
    auto* fila = hacer<QHBoxLayout>();
    fila->addStretch();
    const std::pair<const char*, QString> botones[] = {{"BtnAgregar", tr("Agregar")},
                                                       {"BtnModificar", tr("Modificar")},
                                                       {"BtnQuitar", tr("Quitar")},
                                                       {"BtnSalir", tr("Salir")}};
    for (const auto& [nombre, rotulo] : botones) {
        auto* boton = control<QPushButton>(nombre, rotulo, this);
        boton->setEnabled(false); // they have no action, and should not look as if
        boton->setToolTip(tr("Sin acción en esta ventana"));
        fila->addWidget(boton);
    }
    todo->addLayout(fila);
    prepararVentana(*this);
}

void FrmPuertos::mostrarPuertos() {
    LstViewPuertos_->clear();
    alFrente(*this);
}

} // namespace kv
