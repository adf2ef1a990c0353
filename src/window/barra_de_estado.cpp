// SPDX-License-Identifier: Apache-2.0
#include "window/barra_de_estado.h"

#include "window/controls/control.h"

#include <QLabel>
#include <QToolButton>

namespace kv {
namespace {

constexpr std::int64_t kEntreCifrasMs = 1000;
constexpr QRgb kFondoDeLoQueEstaMal = 0xFFD54F; // black letters can be read on it on any palette

} // namespace

BarraDeEstado::BarraDeEstado(QWidget* padre)
    : QStatusBar(padre),
      respuestas_(cifra("lblRespuestasPorSegundo", tr("Respuestas de las estaciones por segundo"))),
      variables_(cifra("lblVariablesBAD", tr("Variables que se leen y están BAD, de todas"))),
      viejas_(
          cifra("lblViejas", tr("Variables OK cuya última lectura es más vieja de lo que debe"))),
      calladas_(cifra("lblCalladas", tr("Estaciones que no contestan"))),
      conexiones_(cifra("lblConexionesArriba", tr("Conexiones con estaciones, de todas"))),
      supervisor_(cifra("lblSupervisor", tr("El supervisor, y desde cuándo"))),
      guion_(cifra("lblGuion", tr("Última corrida del guion"))),
      sucesos_(control<QToolButton>("btnSinReconocer", this)) {
    sucesos_->setAutoRaise(true);
    sucesos_->setToolTip(tr("Avisos y alarmas sin reconocer (F3)"));
    sucesos_->hide();
    addPermanentWidget(sucesos_);
    connect(sucesos_, &QToolButton::clicked, this, &BarraDeEstado::verSucesos);
}

QLabel* BarraDeEstado::cifra(const char* nombre, const QString& ayuda) {
    auto* rotulo = control<QLabel>(nombre, this);
    rotulo->setContentsMargins(6, 0, 6, 0);
    rotulo->setToolTip(ayuda);
    rotulo->setAccessibleDescription(ayuda);
    addPermanentWidget(rotulo);
    return rotulo;
}

void BarraDeEstado::compactar(bool compacta) {
    compacta_ = compacta;
    respuestas_->setHidden(compacta);
}

void BarraDeEstado::poner(QLabel& donde, const QString& texto, bool mal) const {
    donde.setText(texto);
    donde.setVisible(mal || !compacta_ || &donde == variables_ || &donde == supervisor_);
    if (donde.autoFillBackground() == mal) return;
    donde.setAutoFillBackground(mal);
    QPalette paleta;
    if (mal) {
        paleta.setColor(QPalette::Window, QColor(kFondoDeLoQueEstaMal));
        paleta.setColor(QPalette::WindowText, Qt::black);
    }
    donde.setPalette(paleta);
}

/// That none has come yet is no fault: a plant may be commissioned without.
void BarraDeEstado::ponerCliente(const ClienteVisto& cliente, const PorQue& porQue) {
    if (!cliente.direccion.empty()) {
        const QString desde = enQt(porQue.hora(cliente.desdeMs));
        return poner(*supervisor_,
                     cliente.identificado ? tr("Supervisor desde %1").arg(desde)
                                          : tr("Supervisor sin identificarse desde %1").arg(desde),
                     false);
    }
    if (cliente.desdeMs < 0) return poner(*supervisor_, tr("Supervisor: ninguno todavía"), false);
    poner(*supervisor_, tr("✖ Sin supervisor desde %1").arg(enQt(porQue.hora(cliente.desdeMs))),
          true);
}

void BarraDeEstado::refrescar(const Operador::Cifras& cifras, const Cuentas& c,
                              const PorQue& porQue) {
    poner(*variables_, tr("✖ %1 de %2 BAD").arg(c.bad).arg(c.variables), c.bad > 0);
    poner(*viejas_, tr("◷ %1 viejas").arg(c.viejas), c.viejas > 0);
    poner(*calladas_, tr("⊘ %1 estaciones mudas").arg(c.calladas), c.calladas > 0);
    poner(*conexiones_, tr("⇄ %1 de %2 conectadas").arg(c.conectadas).arg(c.conexiones),
          c.conectadas < c.conexiones);
    ponerCliente(c.cliente, porQue);
    poner(*guion_,
          c.guion == Color::Rojo    ? tr("✖ Guion")
          : c.guion == Color::Verde ? tr("● Guion")
                                    : tr("○ Guion"),
          c.guion == Color::Rojo);
    sucesos_->setText(tr("⚑ %1 sin reconocer").arg(c.sinReconocer));
    sucesos_->setVisible(c.sinReconocer > 0);
    const std::int64_t ms = cifras.ms - ultimas_.ms;
    if (ms < kEntreCifrasMs) return;
    if (ultimas_.ms > 0)
        respuestas_->setText(tr("%1 respuestas/s")
                                 .arg(static_cast<double>(cifras.respuestas - ultimas_.respuestas) *
                                          1000 / static_cast<double>(ms),
                                      0, 'f', 0));
    ultimas_ = cifras;
}

} // namespace kv
