// SPDX-License-Identifier: Apache-2.0
#include "window/ventana_servidor.h"

#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/mensajero.h"
#include "window/traces/caja_de_traza.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace kv {
namespace {

QString enPalabras(const ClienteVisto& c, const PorQue& porQue) {
    if (c.direccion.empty())
        return c.desdeMs < 0
                   ? VentanaServidor::tr("Todavía no vino ningún cliente")
                   : VentanaServidor::tr("Nadie, desde %1").arg(enQt(porQue.hora(c.desdeMs)));
    const QString quien =
        VentanaServidor::tr("%1, desde %2: ").arg(enQt(c.direccion), enQt(porQue.hora(c.desdeMs)));
    return quien + (c.identificado ? VentanaServidor::tr("identificado")
                                   : VentanaServidor::tr("sin identificarse"));
}

} // namespace

VentanaServidor::VentanaServidor(const VistaServidor& vista, const Trazas& trazas,
                                 Operador& operador, Mensajero& mensajero)
    : VentanaAlDia("FrmServerTCP", kDeCercaMs, nullptr), vista_(vista), operador_(operador),
      mensajero_(mensajero), lblPuertoServidor_(rotulo("lblPuertoServidor", this)),
      lblEstado_(rotulo("lblEstado", this)), lblCliente_(rotulo("lblCliente", this)),
      lblKeepALive_(rotulo("lblKeepALive", this)),
      Text1_(traza(tr("Hacia el cliente (mientras se ve esta ventana)"), trazas.Text1)),
      Text2_(traza(tr("Del cliente"), trazas.Text2)) {
    setWindowTitle(tr("Servidor de clientes"));
    auto* ocultar = control<QPushButton>("BtnOcultar", tr("&Ocultar"), this);
    connect(ocultar, &QPushButton::clicked, this, [this] { operador_.BtnOcultar(); });
    auto* arriba = hacer<QHBoxLayout>();
    arriba->setSpacing(20);
    arriba->addWidget(lblPuertoServidor_);
    arriba->addWidget(lblEstado_);
    arriba->addWidget(lblKeepALive_);
    arriba->addStretch();
    arriba->addWidget(ocultar);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addLayout(arriba);
    lblCliente_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    todo->addWidget(lblCliente_);
    todo->addWidget(Text2_);
    todo->addWidget(Text1_);
    acomodar(*this, {720, 480});
    volverAlLugar(*this);
    prepararVentana(*this);
}

CajaDeTraza* VentanaServidor::traza(const QString& titulo, const Traza& caja) {
    auto* t = hacer<CajaDeTraza>(caja, titulo, this);
    connect(t, &CajaDeTraza::guardar, this, [this](const QString& ruta, const QString& texto) {
        mensajero_.avisar(operador_.guardar(deQt(ruta), deQt(texto)));
    });
    return t;
}

void VentanaServidor::refrescar() {
    lblPuertoServidor_->setText(enQt(vista_.lblPuertoServidor.texto()));
    lblEstado_->setText(enQt(vista_.lblEstado.texto()));
    lblKeepALive_->setText(enQt(vista_.lblKeepALive.texto()));
    lblCliente_->setText(enPalabras(vista_.cliente, operador_.porQue()));
    Text1_->refrescar();
    Text2_->refrescar();
}

void VentanaServidor::closeEvent(QCloseEvent* suceso) {
    suceso->ignore();
    operador_.BtnOcultar();
}

} // namespace kv
