// What the main window costs: how fast it opens and scrolls over 100,000 variables, and what it
// adds to the engine while 5,000 values change every second.
//
//     scripts/con_pantalla.sh banco_ventana [--segundos S] [--conexiones N] [--bloques N]

#include "../motor/driver_de_banco.h"
#include "../motor/estaciones_de_banco.h"
#include "ui/qt/ventanas.h"

#include <CLI/CLI.hpp>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QScrollBar>
#include <QSocketNotifier>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace kv::banco {
namespace {

constexpr int kPausaMs = 200;

class Nadie final : public Observador {
  public:
    void alAgregar(std::string_view /*caja*/, std::int64_t /*indice*/,
                   std::string_view /*texto*/) override {}
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

/// Processor time of this process per second and per change while `correr` lasts.
double medir(const char* que, Driver& driver, double segundos,
             const std::function<void()>& correr) {
    const std::uint64_t antes = driver.intercambios();
    const double cpuAntes = tiempoDeProcesador().total;
    correr();
    const double cpu = tiempoDeProcesador().total - cpuAntes;
    const auto cambios = static_cast<double>(driver.intercambios() - antes);
    std::printf("%-34s %6.0f changes/s  %6.1f ms of processor a second  %6.2f us a change\n", que,
                cambios / segundos, cpu / segundos * 1000, cpu * 1e6 / cambios);
    std::fflush(stdout);
    return cpu / segundos * 1000;
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

void todo(QApplication& aplicacion, Driver& driver, double segundos) {
    const double sin =
        medir("no window, bare loop", driver, segundos, [&] { driver.correr(segundos); });
    Motor& motor = driver.motor();
    Nadie nadie;
    Mensajero mensajero(nadie);
    EditorDeGuion editor(motor.archivos, motor.guion);
    const QSocketNotifier aviso(driver.bucle().descriptor(), QSocketNotifier::Read);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &aplicacion, [&driver] { driver.bucle().atender(); });
    const double oculta = medir("window's loop, nothing shown", driver, segundos,
                                [&] { correrCon(aplicacion, segundos); });
    std::unique_ptr<Ventanas> ventanas;
    const double hacerla = msDe([&] {
        ventanas = std::make_unique<Ventanas>(
            PartesDeVentana{motor.vista, motor.operador, editor, mensajero, "", [] {}});
    });
    Form1& form = ventanas->principal();
    const double abrirla = msDe([&] {
        form.show();
        form.repaint();
    });
    auto& tabla = *form.findChild<QTableView*>("lstViewVariables");
    std::printf("%d rows: %.0f ms to make the window, %.0f ms to show it\n",
                tabla.model()->rowCount(), hacerla, abrirla);
    correrCon(aplicacion, 1);
    const double vista = medir("shown: variables and frames", driver, segundos,
                               [&] { correrCon(aplicacion, segundos); });
    auto& trazas = *form.findChild<QTabWidget*>("fichasDeTrazas");
    trazas.setCurrentIndex(1);
    const double quieta = medir("shown: variables, discarded frames", driver, segundos,
                                [&] { correrCon(aplicacion, segundos); });
    auto& filtro = *form.findChild<QLineEdit*>("txtFiltro_lstViewVariables");
    filtro.setText("ok");
    const double filtrada = medir("shown: variables, filtered", driver, segundos,
                                  [&] { correrCon(aplicacion, segundos); });
    filtro.clear();
    desplazar(tabla);
    for (const char* texto : {"1", "1.77", "MW_1_5 ok"})
        std::printf("filter \"%s\": %.0f ms\n", texto, msDe([&] { filtro.setText(texto); }));
    filtro.clear();
    for (int columna = 0; columna < 5; ++columna)
        std::printf("sort by column %d: %.0f ms\n", columna,
                    msDe([&] { tabla.sortByColumn(columna, Qt::AscendingOrder); }));
    std::printf("added to the bare loop, ms of processor a second: loop %.1f, shown with frames "
                "%.1f, without %.1f, filtered %.1f\n",
                oculta - sin, vista - sin, quieta - sin, filtrada - sin);
    driver.motor().vista.observar(nullptr);
}

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    CLI::App app{"The main window's cost"};
    double segundos = 5;
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
    kv::banco::todo(aplicacion, driver, segundos);
    return 0;
}
