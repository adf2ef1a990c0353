// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/history/libro_de_sucesos.h"
#include "window/partes.h"
#include "window/trends/registro.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <vector>

class QTimer;
class QWidget;

namespace kv {

class VentanaDeSucesos;
class VentanaDeTendencias;

/// What looks after the plant beside the main window: the history and the trends, which are kept
/// whether anybody looks or not, and the windows that show them, made when they are first asked
/// for.
class Vigilancia final : public QObject {
    Q_OBJECT
  public:
    /// The windows will be `principal`'s.
    Vigilancia(const PartesDeVentana& partes, QWidget* principal);
    ~Vigilancia() override;

    void abrirSucesos();
    void abrirTendencias();
    /// Rows of the variables list; the window of trends comes to the front.
    void agregarATendencias(const std::vector<std::uint32_t>& filas);
    /// Looks at what the trends are of; called twice a second by itself.
    void mirar();
    [[nodiscard]] const LibroDeSucesos& libro() const { return libro_; }

  signals:
    /// The operator wants to see a block, or a connection; kNinguno for what is not meant.
    void irA(quint32 bloque, quint32 conexion);

  private:
    void recordarTendencias() const;

    PartesDeVentana partes_;
    QWidget* principal_;
    LibroDeSucesos libro_;
    RegistroDeTendencias tendencias_;
    QStringList porVolver_; ///< addresses that were drawn at the last end, and have no row yet
    QTimer* ritmo_;
    QPointer<VentanaDeSucesos> ventanaDeSucesos_;
    QPointer<VentanaDeTendencias> ventanaDeTendencias_;
};

} // namespace kv
