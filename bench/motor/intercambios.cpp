// What an exchange with a station costs the driver, beside a bare loop that does the same in the
// same run. The figures that matter are the ratios.
//
//     intercambios [--segundos S] [--conexiones N ...] [--guion FILE] [--pausado | --saturado]

#include "bucle_pelado.h"
#include "driver_de_banco.h"
#include "estaciones_de_banco.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>

namespace kv::banco {
namespace {

Medida medirDriver(Driver& driver, double segundos) {
    const Procesador antesCpu = tiempoDeProcesador();
    const std::uint64_t antes = driver.intercambios();
    driver.correr(segundos);
    const auto hechos = static_cast<double>(driver.intercambios() - antes);
    const Procesador cpu = tiempoDeProcesador();
    return {(cpu.total - antesCpu.total) * 1e6 / hechos,
            (cpu.fueraDelNucleo - antesCpu.fueraDelNucleo) * 1e6 / hechos, hechos / segundos};
}

void saturado(int conexiones, double segundos, const std::string& guion) {
    // Blocks enough that one is always due, and scan times so long that a block is not due over and
    // over again while it waits for its turn.
    const int bloques = conexiones < 100 ? 16 : conexiones < 1000 ? 4 : 2;
    const double scan = std::max(0.001, conexiones * 20e-6);
    const EstacionesDeBanco estaciones;
    const Medida piso = medirBuclePelado(estaciones.puerto(), conexiones, segundos, 0);
    Driver driver(estaciones.puerto(), conexiones, bloques, scan, 0, guion);
    const Medida m = medirDriver(driver, segundos);
    std::printf(
        "saturated %5d connections: floor %6.2f us (%.2f outside the kernel)  driver %6.2f us "
        "(%.2f)  ratio %.2f  (%.0f/s, %.0f/s)\n",
        conexiones, piso.usPorIntercambio, piso.usFueraDelNucleo, m.usPorIntercambio,
        m.usFueraDelNucleo, m.usPorIntercambio / piso.usPorIntercambio, piso.intercambiosPorSegundo,
        m.intercambiosPorSegundo);
    std::fflush(stdout);
}

void pausado(int conexiones, double segundos) {
    constexpr int kPausaMs = 800;
    const EstacionesDeBanco estaciones;
    const Medida piso = medirBuclePelado(estaciones.puerto(), conexiones, segundos, kPausaMs);
    Driver driver(estaciones.puerto(), conexiones, 1, 0.8, kPausaMs, "");
    estaciones.repartir();
    driver.correr(6);
    estaciones.olvidar();
    const Medida m = medirDriver(driver, segundos);
    const Atrasos a = estaciones.atrasos();
    std::printf("paced     %5d connections: floor %6.2f us  driver %6.2f us  ratio %.2f  (%.0f/s)  "
                "next request after %.3f ms at least, p50 +%.3f ms, p99 +%.3f ms\n",
                conexiones, piso.usPorIntercambio, m.usPorIntercambio,
                m.usPorIntercambio / piso.usPorIntercambio, m.intercambiosPorSegundo, a.minimoMs,
                a.p50Ms - kPausaMs, a.p99Ms - kPausaMs);
}

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    CLI::App app{"Exchanges with stations: the driver beside a bare loop"};
    double segundos = 4;
    std::vector<int> conexiones{10, 100, 1000, 5000};
    std::string archivoDelGuion;
    bool soloPausado = false;
    bool soloSaturado = false;
    app.add_option("--segundos", segundos, "Length of each measurement");
    app.add_option("--conexiones", conexiones, "Numbers of connections");
    app.add_option("--guion", archivoDelGuion, "A script to run after every answer");
    app.add_flag("--pausado", soloPausado, "Only the paced measurement");
    app.add_flag("--saturado", soloSaturado, "Only the saturated measurements");
    CLI11_PARSE(app, argc, argv);
    kv::banco::permitirMuchosArchivos();
    if (!soloPausado) {
        for (const int n : conexiones)
            kv::banco::saturado(n, segundos, "");
    }
    if (!soloSaturado) kv::banco::pausado(conexiones.back(), segundos * 2);
    return 0;
}
