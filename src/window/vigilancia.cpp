// SPDX-License-Identifier: Apache-2.0
#include "window/vigilancia.h"

#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/history/recuerdo_de_sucesos.h"
#include "window/history/ventana_de_sucesos.h"
#include "window/mensajero.h"
#include "window/overview/ventana_de_resumen.h"
#include "window/reasons/ventana_de_conexion.h"
#include "window/reasons/ventana_por_que.h"
#include "window/trends/ventana_de_tendencias.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTimer>

namespace kv {
namespace {

constexpr std::int64_t kEntreRecuentosMs = 1000;
constexpr std::int64_t kEntreRecuerdosMs = 60'000;
constexpr const char* kClaveDeTendencias = "tendencias/direcciones";

/// A user may look at several plants.
QString archivoDeSucesos(const EditorDeGuion& editor) {
    const QByteArray ruta = QDir::current().absoluteFilePath(enQt(editor.ruta())).toUtf8();
    const auto corto = QCryptographicHash::hash(ruta, QCryptographicHash::Sha256).toHex().left(16);
    return "sucesos-" + QString::fromLatin1(corto) + ".txt";
}

} // namespace

Vigilancia::Vigilancia(const PartesDeVentana& partes, QWidget* principal)
    : QObject(principal), partes_(partes), principal_(principal),
      recuento_(partes.tablas, partes.operador.porQue()), libro_(partes.sucesos),
      tendencias_(partes.vista.lstViewVariables,
                  [&operador = partes.operador] { return operador.cifras().ms; }),
      porVolver_(recordado(kClaveDeTendencias).toStringList()), ritmo_(hacer<QTimer>(this)) {
    connect(ritmo_, &QTimer::timeout, this, &Vigilancia::mirar);
    ritmo_->start(RegistroDeTendencias::kCadaMs);
}

std::vector<QWidget*> Vigilancia::ventanas() const {
    std::vector<QWidget*> todas;
    for (QWidget* ventana :
         {static_cast<QWidget*>(ventanaDeResumen_), static_cast<QWidget*>(ventanaDeConexion_),
          static_cast<QWidget*>(ventanaPorQue_), static_cast<QWidget*>(ventanaDeSucesos_),
          static_cast<QWidget*>(ventanaDeTendencias_)}) {
        if (ventana != nullptr) todas.push_back(ventana);
    }
    return todas;
}

/// The windows look at what is kept here, and their owner would outlive it.
Vigilancia::~Vigilancia() {
    recordarSucesos();
    for (QWidget* ventana : ventanas())
        std::unique_ptr<QWidget>(ventana).reset();
}

void Vigilancia::esconder() {
    recordarSucesos();
    for (QWidget* ventana : ventanas())
        ventana->hide();
}

void Vigilancia::contar() {
    const std::int64_t ahora = partes_.operador.cifras().ms;
    if (contadoMs_ >= 0 && ahora - contadoMs_ < kEntreRecuentosMs) return;
    if (recuento_.avanzar()) contadoMs_ = ahora;
}

void Vigilancia::abrirResumen() {
    if (ventanaDeResumen_ == nullptr) {
        ventanaDeResumen_ = hacer<VentanaDeResumen>(recuento_, partes_.tablas,
                                                    partes_.operador.porQue(), principal_);
        connect(ventanaDeResumen_, &VentanaDeResumen::elegida, this, &Vigilancia::elegida);
    }
    alFrente(*ventanaDeResumen_);
}

void Vigilancia::abrirPorQue(Indice bloque) {
    if (ventanaPorQue_ == nullptr) {
        ventanaPorQue_ =
            hacer<VentanaPorQue>(partes_.tablas, partes_.operador.porQue(), principal_);
        connect(ventanaPorQue_, &VentanaPorQue::verConexion, this, &Vigilancia::abrirConexion);
    }
    ventanaPorQue_->mostrarPara(bloque);
    alFrente(*ventanaPorQue_);
}

void Vigilancia::mirarPorQue(Indice bloque) {
    if (ventanaPorQue_ != nullptr && ventanaPorQue_->isVisible())
        ventanaPorQue_->mostrarPara(bloque);
}

void Vigilancia::abrirConexion(Indice conexion) {
    if (ventanaDeConexion_ == nullptr)
        ventanaDeConexion_ = hacer<VentanaDeConexion>(partes_.tablas, partes_.operador, principal_);
    ventanaDeConexion_->mostrarPara(conexion);
    alFrente(*ventanaDeConexion_);
}

void Vigilancia::leerLoDeAntes() {
    if (leyoLoDeAntes_ || partes_.editor.ruta().empty()) return;
    leyoLoDeAntes_ = true;
    volverAPoner(libro_, recordadoAparte(archivoDeSucesos(partes_.editor)));
}

void Vigilancia::recordarSucesos() {
    leerLoDeAntes();
    if (!leyoLoDeAntes_ || recordada_ == libro_.version()) return;
    recordada_ = libro_.version();
    recordadaMs_ = partes_.operador.cifras().ms;
    recordarAparte(archivoDeSucesos(partes_.editor), comoRecuerdo(libro_, partes_.tablas));
}

void Vigilancia::abrirSucesos() {
    leerLoDeAntes();
    if (ventanaDeSucesos_ == nullptr) {
        ventanaDeSucesos_ = hacer<VentanaDeSucesos>(libro_, partes_.tablas, principal_);
        connect(ventanaDeSucesos_, &VentanaDeSucesos::reconocidos, this,
                &Vigilancia::recordarSucesos);
        connect(ventanaDeSucesos_, &VentanaDeSucesos::irA, this, &Vigilancia::irA);
        connect(ventanaDeSucesos_, &VentanaDeSucesos::guardar, this,
                [this](const QString& ruta, const QString& texto) {
                    partes_.mensajero.avisar(partes_.operador.guardar(deQt(ruta), deQt(texto)));
                });
    }
    alFrente(*ventanaDeSucesos_);
}

void Vigilancia::abrirTendencias() {
    if (ventanaDeTendencias_ == nullptr) {
        ventanaDeTendencias_ =
            hacer<VentanaDeTendencias>(tendencias_, partes_.operador, principal_);
        connect(ventanaDeTendencias_, &VentanaDeTendencias::avisar, this,
                [this](const Aviso& aviso) { partes_.mensajero.avisar(aviso); });
        connect(ventanaDeTendencias_, &VentanaDeTendencias::cambiaron, this,
                &Vigilancia::recordarTendencias);
    }
    alFrente(*ventanaDeTendencias_);
}

void Vigilancia::agregarATendencias(const std::vector<std::uint32_t>& filas) {
    bool entran = true;
    for (const std::uint32_t fila : filas)
        entran = tendencias_.agregar(fila) && entran;
    if (!entran)
        partes_.mensajero.avisar(
            {deQt(
                 tr("Entran %1 variables; quite alguna antes.").arg(RegistroDeTendencias::kSeries)),
             deQt(tr("Atencion"))});
    recordarTendencias();
    abrirTendencias();
}

void Vigilancia::recordarTendencias() const {
    QStringList direcciones = porVolver_;
    for (const Serie& s : tendencias_.series())
        direcciones << enQt(s.direccion);
    recordar(kClaveDeTendencias, direcciones);
}

void Vigilancia::mirar() {
    leerLoDeAntes();
    if (partes_.operador.cifras().ms - recordadaMs_ >= kEntreRecuerdosMs) recordarSucesos();
    porVolver_.removeIf([&](const QString& direccion) {
        const std::int64_t fila = partes_.vista.lstViewVariables.buscar(deQt(direccion));
        return fila >= 0 && tendencias_.agregar(static_cast<std::uint32_t>(fila));
    });
    tendencias_.mirar();
}

} // namespace kv
