// SPDX-License-Identifier: Apache-2.0
#include "window/Form1.h"

#include "window/barra_de_estado.h"
#include "window/cabeza_de_Form1.h"
#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/dialogs/FrmAbout.h"
#include "window/dialogs/FrmEscritura.h"
#include "window/dialogs/FrmPuertos.h"
#include "window/help/ventana_de_manual.h"
#include "window/listas_de_Form1.h"
#include "window/lists/tabla_de_lista.h"
#include "window/mensajero.h"
#include "window/panel_de_ordenes.h"
#include "window/panel_de_trazas.h"
#include "window/script/FrmScript.h"
#include "window/traces/caja_de_traza.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>

namespace kv {
namespace {

constexpr int kRitmoMs = 250;            // as fast as numbers can be read
constexpr unsigned kVueltasPorTraza = 2; // whole lines need longer
constexpr QSize kEntera{1480, 920};
constexpr QSize kCompacta{800, 460};
constexpr int kAnchoDeOrdenes = 400;

} // namespace

Form1::Form1(const PartesDeVentana& partes)
    : partes_(partes), vista_(partes.vista), operador_(partes.operador),
      mensajero_(partes.mensajero), candado_(partes.operador, partes.mensajero),
      ritmo_(hacer<QTimer>(this)), vigilancia_(hacer<Vigilancia>(partes, this)),
      cabeza_(hacer<CabezaDeForm1>(vista_, partes.editor, this)),
      sockets_(hacer<TablaDeLista>(vista_.lstViewSockets, formaDeSockets(), tr("Conexiones"),
                                   anexosDeConexiones(partes, vigilancia_->recuento()), this)),
      variables_(hacer<TablaDeLista>(vista_.lstViewVariables, formaDeVariables(), tr("Variables"),
                                     anexosDeVariables(partes), this)),
      bloques_(hacer<TablaDeLista>(vista_.lstViewEstadoDeBloques, formaDeBloques(), tr("Bloques"),
                                   anexosDeBloques(partes), this)),
      trazas_(hacer<PanelDeTrazas>(partes.trazas, vista_, this)),
      estado_(hacer<BarraDeEstado>(this)) {
    setObjectName("Form1");
    setWindowTitle("Driver KV2200");
    setWindowIcon(iconoDelPrograma());
    armarMenu();
    auto* abajo = control<QSplitter>("partesDeForm1", Qt::Vertical);
    abajo->addWidget(armarListas());
    abajo->addWidget(trazas_);
    abajo->setStretchFactor(0, 3);
    abajo->setStretchFactor(1, 1);
    abajo->setSizes({560, 240});
    auto* centro = hacer<QWidget>(this);
    auto* filas = hacer<QVBoxLayout>(centro);
    filas->setContentsMargins(8, 6, 8, 4);
    filas->addWidget(cabeza_);
    auto* medio = hacer<QHBoxLayout>();
    medio->addWidget(abajo, 1);
    medio->addWidget(armarOrdenes());
    filas->addLayout(medio, 1);
    setCentralWidget(centro);
    setStatusBar(estado_);
    conectarListas();
    armarMenusDeFilas();
    // The layout's own minimum lags behind what is hidden and would hold the compact size up.
    layout()->setSizeConstraint(QLayout::SetNoConstraint);
    setMinimumSize(kCompacta);
    acomodar(*this, kEntera);
    acordarse();
    ritmo_->setInterval(kRitmoMs);
    connect(ritmo_, &QTimer::timeout, this, &Form1::refrescar);
    prepararVentana(*this);
}

Form1::~Form1() {
    recordarse();
    seguir(false);
}

void Form1::recordarse() const {
    for (const TablaDeLista* lista : {sockets_, variables_, bloques_})
        lista->recordarse();
    for (const QSplitter* partes : findChildren<QSplitter*>())
        recordar("partes/" + partes->objectName(), partes->saveState());
    if (!compacta_) recordarLugar(*this);
}

void Form1::acordarse() {
    // What says how a row stands lies together, and what it is called behind it.
    const int deLaLista = static_cast<int>(vista_.lstViewVariables.columnas().size());
    for (int c = deLaLista; c < deLaLista + 2; ++c)
        variables_->ponerDelante(c, c - 2);
    for (TablaDeLista* lista : {sockets_, variables_, bloques_})
        lista->acordarse();
    for (QSplitter* partes : findChildren<QSplitter*>())
        partes->restoreState(recordado("partes/" + partes->objectName()).toByteArray());
    volverAlLugar(*this);
}

QWidget* Form1::armarListas() {
    listas_ = control<QTabWidget>("fichasDeListas");
    listas_->setDocumentMode(true);
    listas_->addTab(variables_, tr("Variables"));
    listas_->addTab(bloques_, tr("Bloques"));
    auto* partes = control<QSplitter>("partesDeListas", Qt::Vertical);
    partes->addWidget(sockets_);
    partes->addWidget(listas_);
    partes->setStretchFactor(0, 1);
    partes->setStretchFactor(1, 3);
    partes->setSizes({150, 420});
    partes->setChildrenCollapsible(false);
    return partes;
}

QWidget* Form1::armarOrdenes() {
    ordenes_ = hacer<QWidget>(this);
    ordenes_->setFixedWidth(kAnchoDeOrdenes);
    auto* columna = hacer<QVBoxLayout>(ordenes_);
    columna->setContentsMargins(4, 0, 0, 0);
    panel_ = hacer<PanelDeOrdenes>(operador_, vista_, candado_, ordenes_);
    // Where the screen is low the commands are scrolled, and what came of them stays in sight.
    auto* comandos = hacer<QScrollArea>();
    comandos->setFrameShape(QFrame::NoFrame);
    comandos->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    comandos->setWidgetResizable(true);
    comandos->setWidget(panel_);
    comandos->setMaximumHeight(panel_->sizeHint().height());
    columna->addWidget(comandos, 3);
    pedidas_ = hacer<CajaDeTraza>(partes_.trazas.txtDemandaLecturaEscritura,
                                  tr("Lecturas y escrituras pedidas"), this);
    connect(pedidas_, &CajaDeTraza::guardar, this, &Form1::guardar);
    columna->addWidget(pedidas_, 1);
    connect(panel_, &PanelDeOrdenes::hallada, this, [this](quint32 fila) {
        listas_->setCurrentWidget(variables_);
        variables_->elegir(fila);
    });
    connect(panel_, &PanelDeOrdenes::forzada, this, [this](const QString& direccion) {
        const Lista& lista = vista_.lstViewVariables;
        const std::int64_t fila = lista.buscar(deQt(direccion.trimmed()));
        const std::int64_t b = fila < 0 ? -1 : lista.etiqueta(static_cast<std::uint32_t>(fila));
        if (operador_.sePuedeOlvidar(b)) forzados_.push_back(static_cast<Indice>(b));
    });
    connect(panel_, &PanelDeOrdenes::avisar, this,
            [this](const Aviso& aviso) { mensajero_.avisar(aviso); });
    return ordenes_;
}

void Form1::conectarListas() {
    for (TablaDeLista* lista : {variables_, bloques_})
        connect(lista, &TablaDeLista::tildada, this,
                [this](qint64 bloque, bool estado) { prenderOApagar(bloque, estado); });
    connect(variables_, &TablaDeLista::activada, this, &Form1::abrirEscritura);
    connect(bloques_, &TablaDeLista::activada, this, &Form1::preguntarScan);
    for (TablaDeLista* lista : {sockets_, variables_, bloques_})
        connect(lista, &TablaDeLista::guardar, this, &Form1::guardar);
    connect(cabeza_, &CabezaDeForm1::puertos, this, &Form1::BtnConfig);
    connect(cabeza_, &CabezaDeForm1::tamanio, this, &Form1::btnTamanioFormulario);
    connect(trazas_, &PanelDeTrazas::guardar, this, &Form1::guardar);
    connect(vigilancia_, &Vigilancia::irA, this, &Form1::irA);
    connect(vigilancia_, &Vigilancia::elegida, this, &Form1::irAEstacion);
    connect(estado_, &BarraDeEstado::verSucesos, vigilancia_, &Vigilancia::abrirSucesos);
    const auto conexion = [this](quint32 fila) {
        if (const Indice c = conexionDeFila(partes_.tablas, fila); c != kNinguno)
            vigilancia_->abrirConexion(c);
    };
    connect(sockets_, &TablaDeLista::activada, this, conexion);
    connect(sockets_, &TablaDeLista::preguntada, this, conexion);
    for (TablaDeLista* lista : {variables_, bloques_}) {
        const Lista& filas =
            lista == variables_ ? vista_.lstViewVariables : vista_.lstViewEstadoDeBloques;
        connect(lista, &TablaDeLista::preguntada, this,
                [this, &filas](quint32 fila) { porQue(filas, fila); });
        connect(lista, &TablaDeLista::mirada, this, [this, &filas](quint32 fila) {
            if (const std::int64_t b = filas.etiqueta(fila); b >= 0)
                vigilancia_->mirarPorQue(static_cast<Indice>(b));
        });
    }
}

/// Brings the row of a block to the front, or that of a connection where no block is meant.
void Form1::irA(quint32 bloque, quint32 conexion) {
    agrandar();
    alFrente(*this);
    if (bloque != kNinguno) {
        listas_->setCurrentWidget(variables_);
        variables_->elegir(partes_.tablas.bloques[bloque].filaVariable);
    } else if (conexion != kNinguno) {
        sockets_->elegir(partes_.tablas.conexiones[conexion].filaLista);
    }
}

/// All boxes that show what went over the lines show that of one only.
void Form1::soloDe(Indice conexion, Indice bloque, const QString& nombre) {
    trazas_->soloDe(conexion, bloque, nombre);
    agrandar();
}

void Form1::porQue(const Lista& lista, std::int64_t fila) {
    const std::int64_t bloque = fila < 0 ? -1 : lista.etiqueta(static_cast<std::uint32_t>(fila));
    vigilancia_->abrirPorQue(bloque < 0 ? kNinguno : static_cast<Indice>(bloque));
}

/// The lists show what is of one station.
void Form1::irAEstacion(quint32 conexion, quint32 estacion) {
    agrandar();
    alFrente(*this);
    const ConexionIP& c = partes_.tablas.conexiones[conexion];
    const QString suyas = "^" + enQt(direccionDeEstacion(partes_.tablas, conexion, estacion)) + ".";
    variables_->filtrar(suyas);
    bloques_->filtrar(suyas);
    sockets_->filtrar("^" + enQt(direccionDe(c)));
}

void Form1::seguir(bool seguir) {
    for (TablaDeLista* lista : {sockets_, variables_, bloques_})
        lista->seguir(seguir);
}

void Form1::refrescar() {
    for (TablaDeLista* lista : {sockets_, variables_, bloques_})
        lista->refrescar();
    panel_->refrescar();
    cabeza_->refrescar();
    vigilancia_->contar();
    refrescarEstado();
    mirarForzados();
    if (vueltas_++ % kVueltasPorTraza != 0) return;
    pedidas_->refrescar();
    trazas_->refrescar();
}

void Form1::refrescarEstado() {
    const ModeloDeLista& variables = variables_->modelo();
    const Recuento::Total& total = vigilancia_->recuento().total();
    estado_->refrescar(
        operador_.cifras(),
        {variables.cuantas(EstadoDeFila::Mal) + variables.cuantas(EstadoDeFila::Descansa),
         variables.total(), total.viejas, total.calladas,
         sockets_->modelo().cuantas(EstadoDeFila::Bien), sockets_->modelo().total(),
         vigilancia_->libro().sinReconocer(), vista_.servidor.cliente,
         vista_.lblEstadoScript.color()},
        operador_.porQue());
}

void Form1::MnuScript() {
    if (guion_ == nullptr) guion_ = hacer<FrmScript>(partes_.editor, this);
    alFrente(*guion_);
}

void Form1::MnuAbout() {
    if (acerca_ == nullptr) acerca_ = hacer<FrmAbout>(this, enQt(partes_.version));
    alFrente(*acerca_);
}

void Form1::BtnConfig() {
    if (puertos_ == nullptr) puertos_ = hacer<FrmPuertos>(operador_, this);
    puertos_->mostrarPuertos();
}

void Form1::MnuShutdown() {
    if (guion_ == nullptr) return preguntarSalida();
    if (guion_->isWindowModified()) alFrente(*guion_);
    guion_->cerrarY([this] { preguntarSalida(); });
}

void Form1::preguntarSalida() {
    mensajero_.preguntar("msgSalir", tr("Atencion"), tr("Desea Salir?"), [this] {
        salirPermitido_ = true;
        operador_.MnuShutdown();
        partes_.alApagar();
    });
}

void Form1::abrirEscritura(std::uint32_t fila) {
    const AperturaDeEscritura apertura = operador_.abrirEscritura(fila);
    mensajero_.avisar(apertura.aviso);
    if (!apertura.abrir) return;
    if (escritura_ == nullptr) {
        escritura_ = hacer<FrmEscritura>(operador_, this);
        escritura_->confirmarCon([this](const QString& que, const std::function<void()>& hacer) {
            candado_.pedir(que, hacer);
        });
    }
    escritura_->mostrarPara(enQt(apertura.puerto), enQt(apertura.plc), enQt(apertura.direccion),
                            apertura.valor);
}

/// Offers to forget an address that was asked for here and that its station does not have: it would
/// be asked for again and again until the next start.
void Form1::mirarForzados() {
    std::erase_if(forzados_, [this](Indice i) {
        const BloqueLectura& b = partes_.tablas.bloques[i];
        if (b.leidoMs >= 0 || !operador_.sePuedeOlvidar(i)) return true;
        if (b.habilitadoPorRespuestas) return false;
        mensajero_.preguntar("msgOlvidar", tr("Lectura a pedido"),
                             tr("%1 no contesta. Se dio de alta porque se la pidió, y se la sigue "
                                "preguntando. ¿Olvidarla?")
                                 .arg(enQt(b.clave)),
                             [this, i] { operador_.olvidar(i); });
        return true;
    });
}

void Form1::prenderOApagar(qint64 bloque, bool estado) {
    if (!partes_.tablas.bloques.vive(static_cast<double>(bloque))) return;
    const QString clave = enQt(partes_.tablas.bloques[static_cast<Indice>(bloque)].clave);
    candado_.pedir(estado ? tr("Prender el bloque %1").arg(clave)
                          : tr("Apagar el bloque %1").arg(clave),
                   [=, this] { operador_.activarBloque(bloque, estado); });
}

void Form1::preguntarScan(std::uint32_t fila) {
    const auto pregunta = operador_.preguntarScan(fila);
    if (!pregunta) return;
    mensajero_.preguntarTexto(*pregunta, [this, bloque = pregunta->bloque](const QString& texto) {
        if (texto.trimmed().isEmpty()) return;
        candado_.pedir(tr("Cambiar el scan a %1 s").arg(texto), [=, this] {
            mensajero_.avisar(operador_.responderScan(bloque, deQt(texto)));
        });
    });
}

void Form1::guardar(const QString& ruta, const QString& texto) {
    mensajero_.avisar(operador_.guardar(deQt(ruta), deQt(texto)));
}

void Form1::agrandar() {
    if (compacta_) btnTamanioFormulario();
}

void Form1::btnTamanioFormulario() {
    compacta_ = !compacta_;
    for (QWidget* parte :
         {static_cast<QWidget*>(sockets_), static_cast<QWidget*>(trazas_), ordenes_})
        parte->setVisible(!compacta_);
    acomodar(*this, compacta_ ? kCompacta : kEntera);
    cabeza_->compactar(compacta_);
    refrescarEstado();
}

void Form1::showEvent(QShowEvent* suceso) {
    QMainWindow::showEvent(suceso);
    if (ritmo_->isActive()) return;
    seguir(true);
    vueltas_ = 0;
    refrescar();
    ritmo_->start();
}

void Form1::hideEvent(QHideEvent* suceso) {
    QMainWindow::hideEvent(suceso);
    if (suceso->spontaneous()) return; // only to an icon
    ritmo_->stop();
    seguir(false);
    recordarse();
    vigilancia_->esconder();
}

void Form1::closeEvent(QCloseEvent* suceso) {
    if (salirPermitido_) return suceso->accept();
    suceso->ignore();
    estado_->showMessage(tr("Esta ventana no se cierra: Driver > Ocultar ventana la esconde, "
                            "Driver > Salir termina el programa"),
                         8000);
}

} // namespace kv
