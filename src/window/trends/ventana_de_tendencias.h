// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"
#include "window/controls/ventana_al_dia.h"
#include "window/trends/lienzo.h"
#include "window/trends/registro.h"

class QComboBox;
class QMenu;
class QPushButton;

namespace kv {

/// The chosen variables over time, followed or held still, saved as a picture and as a table. What
/// they are is noted whether this window is shown or not.
class VentanaDeTendencias final : public VentanaAlDia {
    Q_OBJECT
  public:
    /// All must outlive the window.
    VentanaDeTendencias(RegistroDeTendencias& registro, Operador& operador, QWidget* padre);
    /// Draws up to now, unless it is held.
    void refrescar() override;

  signals:
    void avisar(const kv::Aviso& aviso);
    /// The chosen variables are others.
    void cambiaron();

  private:
    QWidget* armarBarra();
    void llenarQuitar();
    void guardarImagen();
    void guardarTabla();

    RegistroDeTendencias& registro_;
    Operador& operador_;
    LienzoDeTendencias* lienzo_;
    QComboBox* largo_;
    QPushButton* pausa_;
    QMenu* quitar_;
    FechaHora hora_; ///< up to which is drawn
};

} // namespace kv
