// SPDX-License-Identifier: Apache-2.0
// What the main window costs: how fast it opens and scrolls over 100,000 variables, and what it
// adds to the engine while 5,000 values change every second.
//
//     scripts/con_pantalla.sh banco_ventana [--segundos S] [--conexiones N] [--bloques N]

#include "../motor/driver_de_banco.h"
#include "../motor/estaciones_de_banco.h"
#include "window/ventanas.h"

#include <CLI/CLI.hpp>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <QSocketNotifier>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace kv::banco {
namespace {

constexpr int kPausaMs = 200;

class Nadie final : public Observador {
  public:
    void alCambiarEtiqueta(std::string_view /*etiqueta*/, std::string_view /*texto*/) override {}
    void alCambiarColor(std::string_view /*etiqueta*/, Color /*color*/) override {}
    void alMostrarMensaje(std::string_view /*titulo*/, std::string_view /*texto*/) override {}
};

double msDe(const std::function<void()>& trabajo) {
    QElapsedTimer reloj;
    reloj.start();
    trabajo();
    return static_cast<double>(reloj.nsecsElapsed()) / 1e6;
}

struct Costo {
    double msPorSegundo = 0; ///< processor time of this process
    double cambiosPorSegundo = 0;
};

Costo medir(Driver& driver, double segundos, const std::function<void()>& correr) {
    const std::uint64_t antes = driver.intercambios();
    const double cpuAntes = tiempoDeProcesador().total;
    correr();
    return {(tiempoDeProcesador().total - cpuAntes) / segundos * 1000,
            static_cast<double>(driver.intercambios() - antes) / segundos};
}

void desplazar(QTableView& tabla) {
    std::vector<double> pasos;
    QScrollBar& barra = *tabla.verticalScrollBar();
    const auto paso = [&](int valor) {
        pasos.push_back(msDe([&] {
            barra.setValue(valor);
            tabla.viewport()->repaint();
        }));
    };
    for (int i = 0; i < 500; ++i) // a page at a time, and to far places
        paso(i % 2 == 0 ? barra.value() + barra.pageStep() : (i * 7919) % (barra.maximum() + 1));
    std::sort(pasos.begin(), pasos.end());
    std::printf("a scroll step: median %.2f ms, 99th percentile %.2f ms, worst %.2f ms\n",
                pasos[pasos.size() / 2], pasos[pasos.size() * 99 / 100], pasos.back());
}

void correrCon(QApplication& aplicacion, double segundos) {
    QTimer::singleShot(static_cast<int>(segundos * 1000), &aplicacion,
                       [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

/// Turn and turn about with the engine alone, so that what else the machine does meets both.
void comparar(const char* que, QApplication& aplicacion, Driver& driver, double segundos,
              const std::function<void(bool)>& mostrar) {
    constexpr int kVeces = 4;
    Costo sin, con;
    const auto sumar = [](Costo& suma, const Costo& uno) {
        suma.msPorSegundo += uno.msPorSegundo / kVeces;
        suma.cambiosPorSegundo += uno.cambiosPorSegundo / kVeces;
    };
    for (int i = 0; i < kVeces; ++i) {
        mostrar(false);
        sumar(sin, medir(driver, segundos, [&] { driver.correr(segundos); }));
        mostrar(true);
        correrCon(aplicacion, 0.2);
        sumar(con, medir(driver, segundos, [&] { correrCon(aplicacion, segundos); }));
    }
    std::printf("%-36s %5.0f changes/s; processor a second: alone %6.1f ms, with it %6.1f ms "
                "(%+.1f)\n",
                que, con.cambiosPorSegundo, sin.msPorSegundo, con.msPorSegundo,
                con.msPorSegundo - sin.msPorSegundo);
}

void ordenarYFiltrar(Form1& form, QTableView& tabla) {
    auto& filtro = *form.findChild<QLineEdit*>("txtFiltro_lstViewVariables");
    for (const char* texto : {"1", "1.77", "MW_1_5 ok"})
        std::printf("filter \"%s\": %.0f ms\n", texto, msDe([&] { filtro.setText(texto); }));
    filtro.clear();
    for (int columna = 0; columna < 5; ++columna)
        std::printf("sort by column %d: %.0f ms\n", columna,
                    msDe([&] { tabla.sortByColumn(columna, Qt::AscendingOrder); }));
}

void todo(QApplication& aplicacion, Driver& driver, double segundos) {
    Motor& motor = driver.motor();
    Nadie nadie;
    Mensajero mensajero(nadie);
    EditorDeGuion editor(motor.archivos, motor.guion, motor.scriptControl, motor.tablas);
    const QSocketNotifier aviso(driver.bucle().descriptor(), QSocketNotifier::Read);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &aplicacion, [&driver] { driver.bucle().atender(); });
    std::unique_ptr<Ventanas> ventanas;
    const double hacerla = msDe([&] {
        ventanas = std::make_unique<Ventanas>(
            PartesDeVentana{motor.vista, motor.sucesos, motor.tablas, motor.trazas, motor.operador,
                            editor, mensajero, "", [] {}});
    });
    Form1& form = ventanas->principal();
    const double abrirla = msDe([&] {
        form.show();
        form.repaint();
    });
    auto& tabla = *form.findChild<QTableView*>("lstViewVariables");
    auto& trazas = *form.findChild<QTabWidget*>("fichasDeTrazas");
    std::printf("%d rows: %.0f ms to make the window, %.0f ms to show it\n",
                tabla.model()->rowCount(), hacerla, abrirla);
    correrCon(aplicacion, 1); // the screen has it now
    desplazar(tabla);
    ordenarYFiltrar(form, tabla);
    const auto mostrar = [&](bool seVe) { form.setVisible(seVe); };
    comparar("loop of the windows, none shown", aplicacion, driver, segundos,
             [&](bool) { form.hide(); });
    comparar("shown, with the frames", aplicacion, driver, segundos, mostrar);
    trazas.setCurrentIndex(1);
    comparar("shown, with the discarded frames", aplicacion, driver, segundos, mostrar);
    form.findChild<QLineEdit*>("txtFiltro_lstViewVariables")->setText("ok");
    comparar("shown, filtered", aplicacion, driver, segundos, mostrar);
}

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    kv::usarPaginasGrandes(argv); // as the driver does
    setvbuf(stdout, nullptr, _IOLBF, 0);
    CLI::App app{"The main window's cost"};
    double segundos = 2;
    int conexiones = 1000;
    int bloques = 100;
    app.add_option("--segundos", segundos, "Length of each measurement");
    app.add_option("--conexiones", conexiones, "Connections");
    app.add_option("--bloques", bloques, "Variables of a connection");
    CLI11_PARSE(app, argc, argv);
    kv::banco::permitirMuchosArchivos();
    const kv::banco::EstacionesDeBanco estaciones;
    kv::banco::Driver driver(estaciones.puerto(), conexiones, bloques, 20, kv::banco::kPausaMs, "");
    QApplication aplicacion(argc, argv);
    const QTemporaryDir ajustes; // what windows remember is not that of whoever measures
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, ajustes.path());
    kv::banco::todo(aplicacion, driver, segundos);
    return 0;
}
