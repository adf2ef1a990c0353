// SPDX-License-Identifier: Apache-2.0
#include "window/panel_de_ordenes.h"

#include "window/candado.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kv {

PanelDeOrdenes::PanelDeOrdenes(Operador& operador, const Vista& vista, Candado& candado,
                               QWidget* padre)
    : QWidget(padre), operador_(operador), candado_(candado), vista_(vista),
      txtBuscarDireccion_(caja("txtBuscarDireccion", tr("Dirección que se busca"))),
      lblResultadoBusqueda_(rotulo("lblResultadoBusqueda", this)),
      TxtDireccion_(caja("TxtDireccion", tr("Dirección de prueba"))),
      txtValorDeEscritura_(caja("txtValorDeEscritura", tr("Valor de prueba"))),
      txtForzarNivel_(caja("txtForzarNivel", tr("Nivel"))),
      txtForzarNivelNVeces_(caja("txtForzarNivelNVeces", tr("Cantidad de lecturas"))) {
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(0, 0, 0, 0);
    todo->addWidget(armarBusqueda());
    todo->addWidget(armarPrueba());
    todo->addWidget(armarNivel());
    todo->addWidget(armarPares());
    encadenarTabulador(*todo, nullptr);
}

QLineEdit* PanelDeOrdenes::caja(const char* nombre, const QString& titulo) {
    auto* c = control<QLineEdit>(nombre, this);
    c->setAccessibleName(titulo);
    c->setMaxLength(kDireccionMaxima);
    return c;
}

template <class Orden>
QPushButton* PanelDeOrdenes::boton(const char* nombre, const QString& texto, Orden orden) {
    auto* b = control<QPushButton>(nombre, texto, this);
    connect(b, &QPushButton::clicked, this, orden);
    return b;
}

QGroupBox* PanelDeOrdenes::armarBusqueda() {
    auto* grupo = hacer<QGroupBox>(tr("Buscar dirección exacta"), this);
    auto* g = hacer<QGridLayout>(grupo);
    txtBuscarDireccion_->setPlaceholderText("1.1.10");
    lblResultadoBusqueda_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblResultadoBusqueda_->setMinimumHeight(fontMetrics().lineSpacing() * 4 + 4);
    lblResultadoBusqueda_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    // Its name is what it says: that is what whoever cannot see it has to hear.
    lblResultadoBusqueda_->setAccessibleDescription(tr("Resultado de la búsqueda"));
    g->addWidget(txtBuscarDireccion_, 0, 0);
    g->addWidget(boton("BtnBuscarDireccion", tr("&Buscar"), [this] { BtnBuscarDireccion(); }), 0,
                 1);
    g->addWidget(lblResultadoBusqueda_, 1, 0, 1, 2);
    connect(txtBuscarDireccion_, &QLineEdit::returnPressed, this,
            &PanelDeOrdenes::BtnBuscarDireccion);
    return grupo;
}

QGroupBox* PanelDeOrdenes::armarPrueba() {
    auto* grupo = hacer<QGroupBox>(tr("Dirección de prueba"), this);
    auto* g = hacer<QGridLayout>(grupo);
    auto* direccion = hacer<QLabel>(tr("Di&rección:"), grupo);
    auto* valor = hacer<QLabel>(tr("&Valor:"), grupo);
    direccion->setBuddy(TxtDireccion_);
    valor->setBuddy(txtValorDeEscritura_);
    TxtDireccion_->setPlaceholderText("1.1.10");
    txtValorDeEscritura_->setPlaceholderText("0");
    g->addWidget(direccion, 0, 0);
    g->addWidget(TxtDireccion_, 0, 1);
    g->addWidget(boton("btnForzarLectura", tr("&Forzar lectura"), [this] { btnForzarLectura(); }),
                 0, 2);
    g->addWidget(valor, 1, 0);
    g->addWidget(txtValorDeEscritura_, 1, 1);
    g->addWidget(boton("btnEscribirValor", tr("&Escribir valor"), [this] { btnEscribirValor(); }),
                 1, 2);
    auto* otros = hacer<QHBoxLayout>();
    otros->addWidget(boton("BtnEscribirOtraDireccion", tr("Escribir &otra dirección"),
                           [this] { BtnEscribirOtraDireccion(); }));
    otros->addWidget(boton("BtnEscribirOtroValor", tr("Escribir otro va&lor"),
                           [this] { BtnEscribirOtroValor(); }));
    g->addLayout(otros, 2, 0, 1, 3);
    return grupo;
}

QGroupBox* PanelDeOrdenes::armarNivel() {
    auto* grupo = hacer<QGroupBox>(tr("Forzar un nivel"), this);
    auto* g = hacer<QGridLayout>(grupo);
    auto* nivel = hacer<QLabel>(tr("&Nivel:"), grupo);
    auto* veces = hacer<QLabel>(tr("Ve&ces:"), grupo);
    nivel->setBuddy(txtForzarNivel_);
    veces->setBuddy(txtForzarNivelNVeces_);
    txtForzarNivelNVeces_->setToolTip(
        tr("Lecturas de cada bloque, que después queda como estaba; 0 enciende el nivel y -1 lo "
           "apaga"));
    auto* forzar =
        boton("btnForzarPorNivel", tr("Forzar &por nivel"), [this] { btnForzarPorNivel(); });
    g->addWidget(nivel, 0, 0);
    g->addWidget(txtForzarNivel_, 0, 1);
    g->addWidget(veces, 0, 2);
    g->addWidget(txtForzarNivelNVeces_, 0, 3);
    g->addWidget(forzar, 0, 4);
    return grupo;
}

QGroupBox* PanelDeOrdenes::armarPares() {
    auto* grupo = hacer<QGroupBox>(tr("Escrituras de prueba"), this);
    auto* g = hacer<QGridLayout>(grupo);
    g->addWidget(hacer<QLabel>(tr("Dirección"), grupo), 0, 0);
    g->addWidget(hacer<QLabel>(tr("Valor"), grupo), 0, 1);
    for (int i = 0; i < kPares; ++i) {
        const std::string cual = "(" + std::to_string(i) + ")";
        txtDirDePruebas_.push_back(
            caja(("txtDirDePruebas" + cual).c_str(), tr("Dirección de la prueba %1").arg(i + 1)));
        txtValoresDePruebas_.push_back(
            caja(("txtValoresDePruebas" + cual).c_str(), tr("Valor de la prueba %1").arg(i + 1)));
        g->addWidget(txtDirDePruebas_.back(), i + 1, 0);
        g->addWidget(txtValoresDePruebas_.back(), i + 1, 1);
    }
    g->addWidget(boton("BtnEnviar", tr("Enviar tod&as"), [this] { BtnEnviar(); }), kPares + 1, 0, 1,
                 2);
    return grupo;
}

void PanelDeOrdenes::refrescar() {
    lblResultadoBusqueda_->setText(enQt(vista_.lblResultadoBusqueda.texto()));
}

void PanelDeOrdenes::irABuscar() {
    txtBuscarDireccion_->setFocus(Qt::ShortcutFocusReason);
    txtBuscarDireccion_->selectAll();
}

void PanelDeOrdenes::BtnBuscarDireccion() {
    const std::int64_t fila = operador_.buscarDireccion(deQt(txtBuscarDireccion_->text()));
    refrescar();
    if (fila >= 0) emit hallada(static_cast<quint32>(fila));
}

void PanelDeOrdenes::btnForzarLectura() {
    const QString direccion = TxtDireccion_->text();
    candado_.pedir(tr("Forzar la lectura de %1").arg(direccion), [=, this] {
        operador_.forzarLectura(deQt(direccion));
        emit forzada(direccion);
    });
}

void PanelDeOrdenes::btnEscribirValor() {
    const QString direccion = TxtDireccion_->text();
    const QString valor = txtValorDeEscritura_->text();
    candado_.pedir(tr("Escribir %1 en %2").arg(valor, direccion), [=, this] {
        emit avisar(operador_.escribirValor(deQt(direccion), deQt(valor)));
    });
}

void PanelDeOrdenes::btnForzarPorNivel() {
    const QString nivel = txtForzarNivel_->text();
    const QString veces = txtForzarNivelNVeces_->text();
    candado_.pedir(tr("Forzar el nivel %1, veces: %2").arg(nivel, veces),
                   [=, this] { emit avisar(operador_.forzarPorNivel(deQt(nivel), deQt(veces))); });
}

void PanelDeOrdenes::BtnEscribirOtraDireccion() {
    const QString valor = txtValorDeEscritura_->text();
    candado_.pedir(
        tr("Escribir %1 en la dirección que sigue a %2").arg(valor, TxtDireccion_->text()),
        [=, this] {
            std::string direccion = deQt(TxtDireccion_->text());
            const Aviso aviso = operador_.escribirOtraDireccion(direccion, deQt(valor));
            TxtDireccion_->setText(enQt(direccion));
            emit avisar(aviso);
        });
}

void PanelDeOrdenes::BtnEscribirOtroValor() {
    const QString direccion = TxtDireccion_->text();
    candado_.pedir(tr("Escribir otro valor en %1").arg(direccion), [=, this] {
        std::string valor = deQt(txtValorDeEscritura_->text());
        const Aviso aviso = operador_.escribirOtroValor(deQt(direccion), valor);
        txtValorDeEscritura_->setText(enQt(valor));
        emit avisar(aviso);
    });
}

void PanelDeOrdenes::BtnEnviar() {
    std::vector<Operador::Par> pares;
    for (std::size_t i = 0; i < txtDirDePruebas_.size(); ++i)
        pares.push_back({deQt(txtDirDePruebas_[i]->text()), deQt(txtValoresDePruebas_[i]->text())});
    candado_.pedir(tr("Enviar todas las escrituras de prueba"),
                   [this, pares] { emit avisar(operador_.enviarPares(pares)); });
}

} // namespace kv
