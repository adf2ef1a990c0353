// SPDX-License-Identifier: Apache-2.0
#include "window/ventanas.h"

#include "window/controls/idioma.h"
#include "window/controls/ventana.h"

namespace kv {
namespace {

void mostrar(QWidget& ventana, bool seVe) {
    if (ventana.isVisible() == seVe) return;
    if (seVe) {
        alFrente(ventana);
    } else {
        ventana.hide();
    }
}

} // namespace

Ventanas::Ventanas(const PartesDeVentana& partes)
    : vista_(partes.vista), form1_(partes),
      servidor_(partes.vista.servidor, partes.trazas, partes.operador, partes.mensajero) {
    partes.mensajero.delante(&form1_);
    partes.operador.hablarEn(enIngles() ? Idioma::Ingles : Idioma::Castellano);
}

void Ventanas::mirarVisibilidad() {
    mostrar(form1_, vista_.Form1Visible);
    mostrar(servidor_, vista_.FrmServerTCPVisible);
}

} // namespace kv
