// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/candado.h"
#include "window/partes.h"
#include "window/vigilancia.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <vector>

class QKeySequence;
class QMenu;
class QTabWidget;
class QTimer;

namespace kv {

class BarraDeEstado;
class CabezaDeForm1;
class CajaDeTraza;
class FrmAbout;
class FrmEscritura;
class FrmPuertos;
class FrmScript;
class VentanaDeManual;
class PanelDeOrdenes;
class PanelDeTrazas;
class TablaDeLista;

/// The main window: three lists, the traces, the commands, the menu. It shows the view at the
/// screen's pace while it is itself shown, and nothing of it costs anything while it is hidden. It
/// cannot be closed until a shutdown was confirmed.
class Form1 final : public QMainWindow {
    Q_OBJECT
  public:
    explicit Form1(const PartesDeVentana& partes);
    ~Form1() override;

    /// Shows what changed since the last time; called four times a second while the window is
    /// shown.
    void refrescar();

  protected:
    void showEvent(QShowEvent* suceso) override;
    void hideEvent(QHideEvent* suceso) override;
    void closeEvent(QCloseEvent* suceso) override;

  private:
    void armarMenu();
    void armarMenuIr();
    void armarMenuDeDatos();
    void armarMenuDeVigilancia();
    void armarMenuDeAyuda();
    void armarMenusDeFilas();
    [[nodiscard]] TablaDeLista* laLista() const;
    void recordarse() const;
    void acordarse();
    /// A line of a menu; `teclas` may be empty.
    void entrada(QMenu* menu, const char* nombre, const QString& texto, const QKeySequence& teclas,
                 const std::function<void()>& orden);
    QWidget* armarListas();
    QWidget* armarOrdenes();
    void conectarListas();
    void seguir(bool seguir);
    void MnuScript();
    void MnuAbout();
    void MnuEvidencia();
    void hacerEvidencia(const QString& ruta);
    void MnuShutdown();
    void preguntarSalida();
    void irA(quint32 bloque, quint32 conexion);
    void irAEstacion(quint32 conexion, quint32 estacion);
    void porQue(const Lista& lista, std::int64_t fila);
    void soloDe(Indice conexion, Indice bloque, const QString& nombre);
    void refrescarEstado();
    void BtnConfig();
    void abrirEscritura(std::uint32_t fila);
    void preguntarScan(std::uint32_t fila);
    void mirarForzados();
    void prenderOApagar(qint64 bloque, bool estado);
    void guardar(const QString& ruta, const QString& texto);
    void btnTamanioFormulario();
    void agrandar();

    PartesDeVentana partes_;
    Vista& vista_;
    Operador& operador_;
    Mensajero& mensajero_;
    Candado candado_;
    QPointer<FrmEscritura> escritura_;
    QPointer<FrmScript> guion_;
    QPointer<FrmPuertos> puertos_;
    QPointer<FrmAbout> acerca_;
    QPointer<VentanaDeManual> manual_;
    bool salirPermitido_ = false;
    bool compacta_ = false;
    unsigned vueltas_ = 0;
    QTimer* ritmo_;
    Vigilancia* vigilancia_;

    CabezaDeForm1* cabeza_;
    TablaDeLista* sockets_;
    TablaDeLista* variables_;
    TablaDeLista* bloques_;
    PanelDeTrazas* trazas_;
    QTabWidget* listas_ = nullptr;
    QWidget* ordenes_ = nullptr;
    PanelDeOrdenes* panel_ = nullptr;
    CajaDeTraza* pedidas_ = nullptr;
    std::vector<Indice> forzados_; ///< blocks made from here that have not answered yet
    BarraDeEstado* estado_;
};

} // namespace kv
