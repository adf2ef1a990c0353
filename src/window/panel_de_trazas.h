// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/trazas.h"
#include "view/vista.h"

#include <QTabWidget>

#include <vector>

namespace kv {

class CajaDeTraza;
class Fichas;
struct FuenteDeFichas;

/// The traces of the main window, behind tabs: those of everything, and those of each block and
/// each connection.
class PanelDeTrazas final : public QTabWidget {
    Q_OBJECT
  public:
    /// Both must outlive it.
    PanelDeTrazas(const Trazas& trazas, const Vista& vista, QWidget* padre);
    void refrescar();
    /// The boxes of everything show what is of one connection or block, and come to the front;
    /// kNinguno twice: all.
    void soloDe(Indice conexion, Indice bloque, const QString& nombre);

  signals:
    void guardar(const QString& ruta, const QString& texto);

  private:
    void agregarCaja(const QString& titulo, const QString& ficha, const Traza& traza);
    void agregarFichas(FuenteDeFichas fuente, const QString& titulo, const QString& ficha);

    std::vector<CajaDeTraza*> cajas_;
    std::vector<Fichas*> fichas_;
};

} // namespace kv
