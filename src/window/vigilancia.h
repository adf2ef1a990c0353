// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/history/libro_de_sucesos.h"
#include "window/overview/recuento.h"
#include "window/partes.h"
#include "window/trends/registro.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <vector>

class QTimer;
class QWidget;

namespace kv {

class VentanaDeConexion;
class VentanaDeResumen;
class VentanaDeSucesos;
class VentanaDeTendencias;
class VentanaPorQue;

/// What looks after the plant beside the main window: the history and the trends, which are kept
/// whether anybody looks or not, and the windows that show them, made when they are first asked
/// for.
class Vigilancia final : public QObject {
    Q_OBJECT
  public:
    /// The windows will be `principal`'s.
    Vigilancia(const PartesDeVentana& partes, QWidget* principal);
    ~Vigilancia() override;

    void abrirResumen();
    void abrirSucesos();
    void abrirTendencias();
    /// Rows of the variables list; the window of trends comes to the front.
    void agregarATendencias(const std::vector<std::uint32_t>& filas);
    void abrirPorQue(Indice bloque);
    /// The window of reasons, if it is open, turns to the block.
    void mirarPorQue(Indice bloque);
    void abrirConexion(Indice conexion);
    /// The operator hides the program.
    void esconder();
    /// Counts on: a slice of the plant, now and then. Called while the main window is shown.
    void contar();
    [[nodiscard]] const Recuento& recuento() const { return recuento_; }
    /// Looks at what the trends are of; called twice a second by itself.
    void mirar();
    [[nodiscard]] const LibroDeSucesos& libro() const { return libro_; }

  signals:
    /// The operator wants to see a block, or a connection; kNinguno for what is not meant.
    void irA(quint32 bloque, quint32 conexion);
    /// The operator wants to see a station in the lists.
    void elegida(quint32 conexion, quint32 estacion);

  private:
    void recordarTendencias() const;
    /// The history of earlier starts: once, as soon as it is known which plant this is.
    void leerLoDeAntes();
    void recordarSucesos();
    [[nodiscard]] std::vector<QWidget*> ventanas() const;

    PartesDeVentana partes_;
    QWidget* principal_;
    Recuento recuento_;
    std::int64_t contadoMs_ = -1; ///< when the last round ended
    LibroDeSucesos libro_;
    bool leyoLoDeAntes_ = false;
    std::uint64_t recordada_ = 0; ///< the book's version that was kept last
    std::int64_t recordadaMs_ = 0;
    RegistroDeTendencias tendencias_;
    QStringList porVolver_; ///< addresses that were drawn at the last end, and have no row yet
    QTimer* ritmo_;
    QPointer<VentanaDeResumen> ventanaDeResumen_;
    QPointer<VentanaDeConexion> ventanaDeConexion_;
    QPointer<VentanaPorQue> ventanaPorQue_;
    QPointer<VentanaDeSucesos> ventanaDeSucesos_;
    QPointer<VentanaDeTendencias> ventanaDeTendencias_;
};

} // namespace kv
