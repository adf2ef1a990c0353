// SPDX-License-Identifier: Apache-2.0
#include "window/barra_de_estado.h"

#include "window/controls/control.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::int64_t kEntreCifrasMs = 1000;
constexpr int kMargen = 6; // pixels, on both sides of a figure
constexpr int kEntreCifras = 6;
constexpr int kBordes = 40; // of the bar, and the corner by which the window is held
constexpr QRgb kFondoDeLoQueEstaMal = 0xFFD54F; // black letters can be read on it on any palette

} // namespace

BarraDeEstado::BarraDeEstado(QWidget* padre)
    : QStatusBar(padre), caja_(hacer<QWidget>(this)), fila_(hacer<QHBoxLayout>(caja_)),
      respuestas_(cifra("lblRespuestasPorSegundo", tr("Respuestas de las estaciones por segundo"))),
      variables_(cifra("lblVariablesBAD", tr("Variables que se leen y están BAD, de todas"))),
      viejas_(
          cifra("lblViejas", tr("Variables OK cuya última lectura es más vieja de lo que debe"))),
      calladas_(cifra("lblCalladas", tr("Estaciones que no contestan"))),
      conexiones_(cifra("lblConexionesArriba", tr("Conexiones con estaciones, de todas"))),
      supervisor_(cifra("lblSupervisor", tr("El supervisor, y desde cuándo"))),
      guion_(cifra("lblGuion", tr("Última corrida del guion"))),
      sucesos_(control<QToolButton>("btnSinReconocer", caja_)) {
    fila_->setContentsMargins(0, 0, 0, 0);
    fila_->setSpacing(kEntreCifras);
    fila_->insertStretch(0);
    caja_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // it makes itself fit
    addPermanentWidget(caja_, 1);
    sucesos_->setAutoRaise(true);
    sucesos_->setToolTip(tr("Avisos y alarmas sin reconocer (F3)"));
    sucesos_->hide();
    fila_->addWidget(sucesos_);
    connect(sucesos_, &QToolButton::clicked, this, &BarraDeEstado::verSucesos);
}

BarraDeEstado::Cifra BarraDeEstado::cifra(const char* nombre, const QString& ayuda) {
    auto* rotulo = control<QLabel>(nombre, caja_);
    rotulo->setContentsMargins(kMargen, 0, kMargen, 0);
    rotulo->setToolTip(ayuda);
    rotulo->setAccessibleDescription(ayuda);
    fila_->addWidget(rotulo);
    return {rotulo};
}

/// What is missed least goes first. Nothing is shown only to see whether it fits: that would
/// flicker.
void BarraDeEstado::acomodar() {
    const std::array todas{&respuestas_, &guion_,     &calladas_,  &viejas_,
                           &conexiones_, &variables_, &supervisor_};
    std::array<QString, todas.size()> textos;
    int sobra = window()->width() - kBordes;
    if (!sucesos_->isHidden()) sobra -= sucesos_->sizeHint().width() + kEntreCifras;
    const auto ancho = [&](const QString& texto) {
        return texto.isEmpty() ? 0
                               : fontMetrics().size(0, texto).width() + 2 * kMargen + kEntreCifras;
    };
    for (std::size_t i = 0; i < todas.size(); ++i)
        sobra -= ancho(textos[i] = todas[i]->entera);
    const auto cambiar = [&](std::size_t i, const QString& por) {
        sobra += ancho(textos[i]) - ancho(por);
        textos[i] = por;
    };
    for (std::size_t i = 0; i < todas.size() && sobra < 0; ++i) {
        if (!todas[i]->mal) cambiar(i, {});
    }
    for (std::size_t i = 0; i < todas.size() && sobra < 0; ++i) {
        if (!textos[i].isEmpty()) cambiar(i, todas[i]->breve);
    }
    for (std::size_t i = 0; i < todas.size(); ++i) {
        todas[i]->rotulo->setText(textos[i]);
        todas[i]->rotulo->setHidden(textos[i].isEmpty());
    }
}

void BarraDeEstado::poner(Cifra& cifra, const QString& entera, const QString& breve, bool mal) {
    cifra.entera = entera;
    cifra.breve = breve;
    cifra.mal = mal;
    QLabel& donde = *cifra.rotulo;
    if (donde.autoFillBackground() == mal) return;
    donde.setAutoFillBackground(mal);
    QPalette paleta;
    if (mal) {
        paleta.setColor(QPalette::Window, QColor(kFondoDeLoQueEstaMal));
        paleta.setColor(QPalette::WindowText, Qt::black);
    }
    donde.setPalette(paleta);
}

/// That no client has come yet is no fault: a plant may be commissioned without one.
void BarraDeEstado::ponerCliente(const ClienteVisto& cliente, const PorQue& porQue) {
    const QString desde = enQt(porQue.hora(std::max<std::int64_t>(cliente.desdeMs, 0)));
    if (!cliente.direccion.empty())
        return poner(supervisor_,
                     cliente.identificado ? tr("Supervisor desde %1").arg(desde)
                                          : tr("Supervisor sin identificarse desde %1").arg(desde),
                     tr("Supervisor"), false);
    if (cliente.desdeMs < 0)
        return poner(supervisor_, tr("Supervisor: ninguno todavía"), tr("Supervisor: no"), false);
    poner(supervisor_, tr("✖ Sin supervisor desde %1").arg(desde), tr("✖ Supervisor"), true);
}

void BarraDeEstado::refrescar(const Operador::Cifras& cifras, const Cuentas& c,
                              const PorQue& porQue) {
    poner(variables_, tr("✖ %1 de %2 BAD").arg(c.bad).arg(c.variables), tr("✖ %1 BAD").arg(c.bad),
          c.bad > 0);
    poner(viejas_, tr("◷ %1 viejas").arg(c.viejas), QString("◷ %1").arg(c.viejas), c.viejas > 0);
    poner(calladas_, tr("⊘ %1 estaciones mudas").arg(c.calladas), QString("⊘ %1").arg(c.calladas),
          c.calladas > 0);
    poner(conexiones_, tr("⇄ %1 de %2 conectadas").arg(c.conectadas).arg(c.conexiones),
          QString("⇄ %1/%2").arg(c.conectadas).arg(c.conexiones), c.conectadas < c.conexiones);
    ponerCliente(c.cliente, porQue);
    const bool fallo = c.guion == Color::Rojo;
    const QString guion = fallo                     ? tr("✖ Guion")
                          : c.guion == Color::Verde ? tr("● Guion")
                                                    : tr("○ Guion");
    poner(guion_, guion, guion, fallo);
    sucesos_->setText(tr("⚑ %1 sin reconocer").arg(c.sinReconocer));
    sucesos_->setVisible(c.sinReconocer > 0);
    const std::int64_t ms = cifras.ms - ultimas_.ms;
    if (ms >= kEntreCifrasMs) {
        const double cuantas = static_cast<double>(cifras.respuestas - ultimas_.respuestas) * 1000 /
                               static_cast<double>(ms);
        const QString texto =
            ultimas_.ms > 0 ? tr("%1 respuestas/s").arg(cuantas, 0, 'f', 0) : QString();
        poner(respuestas_, texto, texto, false);
        ultimas_ = cifras;
    }
    acomodar();
}

} // namespace kv
