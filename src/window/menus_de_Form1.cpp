// SPDX-License-Identifier: Apache-2.0
// The menus of the main window.

#include "window/Form1.h"
#include "window/controls/control.h"
#include "window/controls/elegir_archivo.h"
#include "window/help/ventana_de_manual.h"
#include "window/listas_de_Form1.h"
#include "window/lists/tabla_de_lista.h"
#include "window/mensajero.h"
#include "window/panel_de_ordenes.h"

#include <QApplication>
#include <QMenuBar>
#include <QProcess>
#include <QTabWidget>

#include <unistd.h>

namespace kv {

void Form1::entrada(QMenu* menu, const char* nombre, const QString& texto,
                    const QKeySequence& teclas, const std::function<void()>& orden) {
    auto* accion = control<QAction>(nombre, texto, this);
    accion->setShortcut(teclas);
    menu->addAction(accion);
    connect(accion, &QAction::triggered, this, orden);
}

/// The list that is worked on.
TablaDeLista* Form1::laLista() const {
    for (TablaDeLista* lista : {sockets_, variables_, bloques_}) {
        if (lista->tieneElFoco()) return lista;
    }
    return listas_->currentWidget() == bloques_ ? bloques_ : variables_;
}

void Form1::armarMenu() {
    auto* driver = control<QMenu>("MnuDriver", tr("&Driver"), this);
    menuBar()->addMenu(driver);
    entrada(driver, "MnuServer", tr("&Servidor de clientes"), {},
            [this] { operador_.MnuServer(); });
    entrada(driver, "MnuScript", tr("&Guion…"), Qt::CTRL | Qt::Key_G, [this] { MnuScript(); });
    entrada(driver, "MnuRecargar", tr("&Recargar configuración"), QKeySequence::Refresh,
            [this] { operador_.recargar(); });
    entrada(driver, "MnuEvidencia", tr("Guardar &evidencia…"), {}, [this] { MnuEvidencia(); });
    entrada(driver, "MnuAbout", tr("&Acerca de…"), {}, [this] { MnuAbout(); });
    driver->addSeparator();
    entrada(driver, "MnuOcultar", tr("&Ocultar ventana"), Qt::CTRL | Qt::Key_H,
            [this] { operador_.MnuOcultar(); });
    entrada(driver, "MnuShutdown", tr("Sa&lir…"), Qt::CTRL | Qt::Key_Q, [this] { MnuShutdown(); });

    armarMenuIr();
    armarMenuDeDatos();
    armarMenuDeVigilancia();
    armarMenuDeAyuda();
}

void Form1::MnuEvidencia() {
    const FechaHora f = operador_.ahora();
    const QString cuando =
        QString("%1%2").arg(f.hora, 2, 10, QChar('0')).arg(f.minuto, 2, 10, QChar('0'));
    elegirArchivo(this, tr("Guardar evidencia"),
                  "evidencia " + enQt(formatoDeDia(f)) + " " + cuando + ".tar",
                  [this](const QString& ruta) { hacerEvidencia(ruta); });
}

/// By a program of its own, behind everything else that the machine has to do: what it reads and
/// asks for takes seconds, and the engine waits for nobody.
void Form1::hacerEvidencia(const QString& ruta) {
    constexpr int kCortesia = 10;
    QStringList orden;
    for (const std::string& parte : partes_.ordenDeEvidencia)
        orden << enQt(parte);
    if (orden.isEmpty()) return;
    const QString programa = orden.takeFirst();
    auto* proceso = hacer<QProcess>(this);
    proceso->setChildProcessModifier([] { static_cast<void>(nice(kCortesia)); });
    const auto decir = [this, proceso, ruta](bool hecha) {
        const QString detalles = QString::fromUtf8(proceso->readAllStandardError()).trimmed();
        const QString que = hecha ? tr("La evidencia está en %1.") : tr("No se pudo hacer %1.");
        const QString texto = que.arg(ruta) + (detalles.isEmpty() ? "" : "\r\n" + detalles);
        mensajero_.avisar({deQt(texto), deQt(tr("Guardar evidencia")), !hecha});
        proceso->deleteLater();
    };
    connect(proceso, &QProcess::finished, this, [decir](int codigo, QProcess::ExitStatus como) {
        decir(codigo == 0 && como == QProcess::NormalExit);
    });
    connect(proceso, &QProcess::errorOccurred, this, [decir](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) decir(false); // else it will have finished, too
    });
    proceso->start(programa, orden << ruta);
}

void Form1::armarMenuIr() {
    auto* ir = control<QMenu>("MnuIr", tr("&Ir a"), this);
    menuBar()->addMenu(ir);
    const auto enLista = [this](TablaDeLista* tabla) {
        listas_->setCurrentWidget(tabla);
        tabla->enfocar();
    };
    entrada(ir, "MnuIrVariables", tr("&Variables"), Qt::CTRL | Qt::Key_1,
            [=, this] { enLista(variables_); });
    entrada(ir, "MnuIrBloques", tr("&Bloques"), Qt::CTRL | Qt::Key_2,
            [=, this] { enLista(bloques_); });
    entrada(ir, "MnuIrConexiones", tr("&Conexiones"), Qt::CTRL | Qt::Key_3, [this] {
        agrandar();
        sockets_->enfocar();
    });
    entrada(ir, "MnuIrFiltro", tr("&Filtro"), QKeySequence::Find, [this] {
        (listas_->currentWidget() == bloques_ ? bloques_ : variables_)->enfocarFiltro();
    });
    entrada(ir, "MnuIrBuscar", tr("B&uscar dirección"), Qt::CTRL | Qt::Key_B, [this] {
        agrandar();
        panel_->irABuscar();
    });
}

void Form1::armarMenuDeDatos() {
    auto* datos = control<QMenu>("MnuDatos", tr("Dato&s"), this);
    menuBar()->addMenu(datos);
    // The rows have Ctrl+C of their own: here it would take it from every box.
    entrada(datos, "MnuCopiar", tr("&Copiar filas"), {}, [this] { laLista()->copiar(); });
    entrada(datos, "MnuExportar", tr("&Exportar como CSV…"), Qt::CTRL | Qt::Key_E,
            [this] { laLista()->exportar(); });
    entrada(datos, "MnuOrdenar", tr("&Ordenar por la columna"), Qt::CTRL | Qt::Key_O,
            [this] { laLista()->ordenarPorLaActual(); });
    auto* columnas = control<QMenu>("MnuColumnas", tr("Co&lumnas"), this);
    datos->addMenu(columnas);
    connect(columnas, &QMenu::aboutToShow, this, [this, columnas] {
        columnas->clear();
        laLista()->llenarMenuDeColumnas(*columnas);
    });
    datos->addSeparator();
    const auto valores = [&](const char* nombre, const QString& texto, Base base, Qt::Key tecla) {
        entrada(datos, nombre, texto, Qt::CTRL | Qt::SHIFT | tecla,
                [this, base] { variables_->ponerBase(base); });
    };
    valores("MnuDecimal", tr("Valores en &decimal"), Base::Decimal, Qt::Key_D);
    valores("MnuHexadecimal", tr("Valores en &hexadecimal"), Base::Hexadecimal, Qt::Key_H);
    valores("MnuBinario", tr("Valores en &binario"), Base::Binaria, Qt::Key_B);
}

void Form1::armarMenuDeVigilancia() {
    auto* menu = control<QMenu>("MnuVigilancia", tr("Vi&gilancia"), this);
    menuBar()->addMenu(menu);
    entrada(menu, "MnuResumen", tr("&Resumen de estaciones"), Qt::Key_F2,
            [this] { vigilancia_->abrirResumen(); });
    entrada(menu, "MnuSucesos", tr("&Sucesos"), Qt::Key_F3,
            [this] { vigilancia_->abrirSucesos(); });
    entrada(menu, "MnuTendencias", tr("&Tendencias"), Qt::Key_F4,
            [this] { vigilancia_->abrirTendencias(); });
    entrada(menu, "MnuConexion", tr("&Detalle de la conexión"), Qt::Key_F7, [this] {
        const std::int64_t fila = sockets_->actual();
        vigilancia_->abrirConexion(
            fila < 0 ? kNinguno : conexionDeFila(partes_.tablas, static_cast<std::uint32_t>(fila)));
    });
    entrada(menu, "MnuPorQue", tr("&Por qué"), Qt::Key_F6, [this] {
        const bool bloques = laLista() == bloques_;
        porQue(bloques ? vista_.lstViewEstadoDeBloques : vista_.lstViewVariables,
               (bloques ? bloques_ : variables_)->actual());
    });
}

/// F1 works in every window of the program, and opens the manual where it describes the one in
/// front.
void Form1::armarMenuDeAyuda() {
    auto* menu = control<QMenu>("MnuAyuda", tr("A&yuda"), this);
    menuBar()->addMenu(menu);
    entrada(menu, "MnuManual", tr("&Manual del operador"), QKeySequence::HelpContents, [this] {
        const QString titulo =
            VentanaDeManual::tituloDe(QApplication::activeWindow(), QApplication::focusWidget());
        if (manual_ == nullptr) manual_ = hacer<VentanaDeManual>(this);
        manual_->mostrarEn(titulo);
    });
    findChild<QAction*>("MnuManual")->setShortcutContext(Qt::ApplicationShortcut);
}

void Form1::armarMenusDeFilas() {
    for (TablaDeLista* lista : {variables_, bloques_})
        lista->agregarAccion("accPorQue", tr("Por qué está así"), [this, lista] {
            porQue(lista == variables_ ? vista_.lstViewVariables : vista_.lstViewEstadoDeBloques,
                   lista->actual());
        });
    const auto soloElBloque = [this](TablaDeLista* lista, const Lista& filas, bool suConexion) {
        const std::int64_t fila = lista->actual();
        const std::int64_t b = fila < 0 ? -1 : filas.etiqueta(static_cast<std::uint32_t>(fila));
        if (b < 0) return;
        const BloqueLectura& bloque = partes_.tablas.bloques[static_cast<Indice>(b)];
        if (!suConexion) return soloDe(kNinguno, bloque.indice, enQt(bloque.clave));
        const ConexionIP& c = partes_.tablas.conexiones[bloque.idConexion];
        soloDe(bloque.idConexion, kNinguno, enQt(direccionDe(c)));
    };
    for (TablaDeLista* lista : {variables_, bloques_}) {
        const Lista& filas =
            lista == variables_ ? vista_.lstViewVariables : vista_.lstViewEstadoDeBloques;
        lista->agregarAccion("accSoloBloque", tr("Trazas: sólo este bloque"),
                             [=, &filas] { soloElBloque(lista, filas, false); });
        lista->agregarAccion("accSoloConexion", tr("Trazas: sólo esta conexión"),
                             [=, &filas] { soloElBloque(lista, filas, true); });
    }
    for (TablaDeLista* lista : {variables_, bloques_})
        lista->agregarAccion("accOlvidar", tr("Olvidar (dado de alta a pedido)"), [this, lista] {
            const Lista& filas =
                lista == variables_ ? vista_.lstViewVariables : vista_.lstViewEstadoDeBloques;
            const std::int64_t fila = lista->actual();
            const std::int64_t b = fila < 0 ? -1 : filas.etiqueta(static_cast<std::uint32_t>(fila));
            if (operador_.sePuedeOlvidar(b)) return operador_.olvidar(b);
            mensajero_.avisar({deQt(tr("Está en la configuración: se apaga con su tilde.")),
                               deQt(tr("Atencion"))});
        });
    sockets_->agregarAccion("accSoloConexion", tr("Trazas: sólo esta conexión"), [this] {
        const std::int64_t fila = sockets_->actual();
        if (fila < 0) return;
        const Indice i = conexionDeFila(partes_.tablas, static_cast<std::uint32_t>(fila));
        if (i == kNinguno) return;
        const ConexionIP& c = partes_.tablas.conexiones[i];
        soloDe(i, kNinguno, enQt(direccionDe(c)));
    });
    sockets_->agregarAccion("accConexion", tr("Detalle de la conexión"),
                            [this] { findChild<QAction*>("MnuConexion")->trigger(); });
    variables_->agregarAccion("accTendencias", tr("Agregar a tendencias"),
                              [this] { vigilancia_->agregarATendencias(variables_->elegidas()); });
}

} // namespace kv
