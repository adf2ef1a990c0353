// SPDX-License-Identifier: Apache-2.0
#include "window/barra_de_estado.h"

#include "window/controls/control.h"

#include <QLabel>

namespace kv {
namespace {

constexpr std::int64_t kEntreCifrasMs = 1000;

} // namespace

BarraDeEstado::BarraDeEstado(QWidget* padre)
    : QStatusBar(padre),
      respuestas_(cifra("lblRespuestasPorSegundo", tr("Respuestas de las estaciones por segundo"))),
      variables_(cifra("lblVariablesBAD", tr("Variables que no están OK, de todas"))),
      conexiones_(cifra("lblConexionesArriba", tr("Conexiones con estaciones, de todas"))) {}

QLabel* BarraDeEstado::cifra(const char* nombre, const QString& ayuda) {
    auto* rotulo = control<QLabel>(nombre, this);
    rotulo->setContentsMargins(8, 0, 8, 0);
    rotulo->setToolTip(ayuda);
    rotulo->setAccessibleDescription(ayuda);
    addPermanentWidget(rotulo);
    return rotulo;
}

void BarraDeEstado::refrescar(const Operador::Cifras& cifras, const Cuentas& cuentas) {
    variables_->setText(tr("✖ %1 de %2 sin OK").arg(cuentas.variablesMal).arg(cuentas.variables));
    conexiones_->setText(
        tr("⇄ %1 de %2 conectadas").arg(cuentas.conectadas).arg(cuentas.conexiones));
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
