// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/trazas.h"
#include "operator/operador.h"
#include "view/vista.h"
#include "window/controls/ventana_al_dia.h"

class QLabel;

namespace kv {

class CajaDeTraza;
class Mensajero;

/// The client's window on the screen, under the name FrmServerTCP: how the link stands and what its
/// wire brings and takes. Closing it hides it; the client is served on.
class VentanaServidor final : public VentanaAlDia {
    Q_OBJECT
  public:
    VentanaServidor(const VistaServidor& vista, const Trazas& trazas, Operador& operador,
                    Mensajero& mensajero);
    void refrescar() override;

  protected:
    void closeEvent(QCloseEvent* suceso) override;

  private:
    CajaDeTraza* traza(const QString& titulo, const Traza& caja);

    const VistaServidor& vista_;
    Operador& operador_;
    Mensajero& mensajero_;
    QLabel* lblPuertoServidor_;
    QLabel* lblEstado_;
    QLabel* lblCliente_;
    QLabel* lblKeepALive_;
    CajaDeTraza* Text1_;
    CajaDeTraza* Text2_;
};

} // namespace kv
