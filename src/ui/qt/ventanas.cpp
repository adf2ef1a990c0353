#include "ui/qt/ventanas.h"

namespace kv {
namespace {

void mostrar(QWidget& ventana, bool seVe) {
    if (ventana.isVisible() == seVe) return;
    ventana.setVisible(seVe);
    if (!seVe) return;
    ventana.raise();
    ventana.activateWindow();
}

} // namespace

Ventanas::Ventanas(Vista& vista, Operador& operador, Mensajero& mensajero,
                   std::function<void()> alApagar)
    : vista_(vista), form1_(vista, operador, mensajero, std::move(alApagar)),
      servidor_(vista.servidor, operador, mensajero) {
    mensajero.delante(&form1_);
}

void Ventanas::mirarVisibilidad() {
    mostrar(form1_, vista_.Form1Visible);
    mostrar(servidor_, vista_.FrmServerTCPVisible);
}

} // namespace kv
