// SPDX-License-Identifier: Apache-2.0
#include "window/panel_de_trazas.h"

#include "window/controls/control.h"
#include "window/traces/caja_de_traza.h"
#include "window/traces/fichas.h"

namespace kv {

PanelDeTrazas::PanelDeTrazas(const Trazas& trazas, const Vista& vista, QWidget* padre)
    : QTabWidget(padre) {
    setObjectName("fichasDeTrazas");
    setDocumentMode(true);
    agregarCaja(tr("Tramas enviadas y recibidas"), tr("Tramas"), trazas.txtTramas);
    agregarCaja(tr("Tramas descartadas"), tr("Descartadas"), trazas.txtTramasDescartadas);
    // The number alone tells nobody which block it is. Rows are in the order of the tabs.
    agregarFichas(
        {"txtTimer", "TabStriptxtTimerPorBloque",
         [&vista] { return vista.lstViewEstadoDeBloques.filas(); },
         [&vista](std::size_t i) {
             return QString::number(i + 1) + ":  " +
                    enQt(vista.lstViewEstadoDeBloques.texto(static_cast<std::uint32_t>(i), 0));
         },
         [&trazas](std::size_t i) { return trazas.txtTimer(i); }},
        tr("Temporizador de un bloque"), tr("Por bloque"));
    agregarFichas({"txtTimerIpPuerto", "TabStripTimerIpPuerto",
                   [&vista] { return vista.lstViewSockets.filas(); },
                   [&vista](std::size_t i) {
                       return enQt(vista.lstViewSockets.texto(static_cast<std::uint32_t>(i), 1));
                   },
                   [&trazas](std::size_t i) { return trazas.txtTimerIpPuerto(i); }},
                  tr("Tiempos de una conexión"), tr("Por conexión"));
    agregarCaja(tr("Pasos de las escrituras"), tr("Escrituras"), trazas.txtTimerEscritura);
}

void PanelDeTrazas::agregarCaja(const QString& titulo, const QString& ficha, const Traza& traza) {
    auto* caja = hacer<CajaDeTraza>(traza, titulo, this);
    connect(caja, &CajaDeTraza::guardar, this, &PanelDeTrazas::guardar);
    connect(caja, &CajaDeTraza::quitarFiltro, this, [this] { soloDe(kNinguno, kNinguno, {}); });
    cajas_.push_back(caja);
    addTab(caja, ficha);
}

void PanelDeTrazas::agregarFichas(FuenteDeFichas fuente, const QString& titulo,
                                  const QString& ficha) {
    auto* fichas = hacer<Fichas>(std::move(fuente), titulo, this);
    connect(fichas, &Fichas::guardar, this, &PanelDeTrazas::guardar);
    fichas_.push_back(fichas);
    addTab(fichas, ficha);
}

void PanelDeTrazas::soloDe(Indice conexion, Indice bloque, const QString& nombre) {
    for (CajaDeTraza* caja : cajas_) // those behind strips of tabs have their own choice
        caja->soloDe(conexion, bloque, nombre);
    if (!nombre.isEmpty()) setCurrentIndex(0);
}

void PanelDeTrazas::refrescar() {
    for (CajaDeTraza* caja : cajas_)
        caja->refrescar();
    for (Fichas* fichas : fichas_)
        fichas->refrescar();
}

} // namespace kv
