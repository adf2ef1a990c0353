// SPDX-License-Identifier: Apache-2.0
// What an exchange with a station costs the driver, beside a bare loop that does the same in the
// same run. The figures that matter are the ratios.
//
//     intercambios [--segundos S] [--conexiones N ...] [--guion FILE] [--cliente]
//                  [--pausado [--pausa MS] [--bloques N] | --saturado | --hostil]
//
// With --cliente a supervisory client in a process of its own is sent every value. --hostil says
// how late the driver's requests are with no client, and with each kind of client that means harm.

#include "bucle_pelado.h"
#include "cliente_de_banco.h"
#include "driver_de_banco.h"
#include "estaciones_de_banco.h"
#include "platform/epoll/sistema.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <optional>
#include <sstream>

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

void saturado(int conexiones, double segundos, const std::string& guion, bool conCliente) {
    // Blocks enough that one is always due at the shortest scan: a loop that sleeps between two
    // answers would pay for falling asleep, which the floor does not.
    const int bloques = conexiones < 100 ? 32 : conexiones < 1000 ? 8 : 2;
    constexpr double scan = 0.001;
    const EstacionesDeBanco estaciones;
    estaciones.velar();
    const Medida piso = medirBuclePelado(estaciones.puerto(), conexiones, segundos, 0);
    Driver driver(estaciones.puerto(), conexiones, bloques, scan, 0, guion);
    std::optional<ClienteDeBanco> cliente;
    if (conCliente) {
        driver.servir();
        cliente.emplace(kEscucha, Conducta::Lee);
        driver.correr(3);
    }
    const Medida m = medirDriver(driver, segundos);
    std::printf(
        "saturated %5d connections: floor %6.2f us (%.2f outside the kernel)  driver %6.2f us "
        "(%.2f)  ratio %.2f  (%.0f/s, %.0f/s)\n",
        conexiones, piso.usPorIntercambio, piso.usFueraDelNucleo, m.usPorIntercambio,
        m.usFueraDelNucleo, m.usPorIntercambio / piso.usPorIntercambio, piso.intercambiosPorSegundo,
        m.intercambiosPorSegundo);
    std::fflush(stdout);
}

void pausado(int conexiones, int bloques, int pausaMs, double segundos) {
    const EstacionesDeBanco estaciones;
    const Medida piso = medirBuclePelado(estaciones.puerto(), conexiones, segundos, pausaMs);
    Driver driver(estaciones.puerto(), conexiones, bloques, pausaMs / 1000.0, pausaMs, "");
    estaciones.repartir(pausaMs);
    driver.correr(4 + 2.5 * pausaMs / 1000);
    estaciones.olvidar();
    const Medida m = medirDriver(driver, segundos);
    const Atrasos a = estaciones.atrasos();
    std::printf("paced     %5d connections: floor %6.2f us  driver %6.2f us  ratio %.2f  (%.0f/s)  "
                "next request after %.3f ms at least, p50 +%.3f ms, p99 +%.3f ms\n",
                conexiones, piso.usPorIntercambio, m.usPorIntercambio,
                m.usPorIntercambio / piso.usPorIntercambio, m.intercambiosPorSegundo, a.minimoMs,
                a.p50Ms - pausaMs, a.p99Ms - pausaMs);
}

void hostil(int conexiones, double segundos) {
    constexpr int kPausaMs = 800;
    struct Caso {
        const char* nombre;
        std::optional<Conducta> conducta;
    };
    constexpr std::array<Caso, 9> kCasos{{{"no client", std::nullopt},
                                          {"one that reads", Conducta::Lee},
                                          {"junk", Conducta::Basura},
                                          {"nested frames", Conducta::Anidadas},
                                          {"refused writes", Conducta::Negadas},
                                          {"writes of a register", Conducta::Escrituras},
                                          {"never reads", Conducta::NoLee},
                                          {"a byte a millisecond", Conducta::Goteo},
                                          {"comes and goes", Conducta::VaYViene}}};
    const EstacionesDeBanco estaciones;
    Driver driver(estaciones.puerto(), conexiones, 1, 0.8, kPausaMs, "");
    driver.servir();
    estaciones.repartir(kPausaMs);
    driver.correr(6);
    for (const Caso& caso : kCasos) {
        std::optional<ClienteDeBanco> cliente;
        if (caso.conducta) cliente.emplace(kEscucha, *caso.conducta);
        driver.correr(4); // it is let in within three seconds
        estaciones.olvidar();
        driver.correr(segundos);
        const Atrasos a = estaciones.atrasos();
        std::printf("hostile   %5d connections, %-20s: next request late by p50 %6.2f ms  p99 "
                    "%6.2f ms  at most %6.2f ms  (%.0f exchanges/s)\n",
                    conexiones, caso.nombre, a.p50Ms - kPausaMs, a.p99Ms - kPausaMs,
                    a.maximoMs - kPausaMs, static_cast<double>(a.cuantos) / segundos);
        std::fflush(stdout);
        cliente.reset();
        driver.correr(4);
    }
}

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    kv::usarPaginasGrandes(argv); // as the driver does
    CLI::App app{"Exchanges with stations: the driver beside a bare loop"};
    double segundos = 4;
    std::vector<int> conexiones{10, 100, 1000, 5000};
    std::string archivoDelGuion;
    bool soloPausado = false;
    bool soloSaturado = false;
    bool soloHostil = false;
    bool cliente = false;
    int pausaMs = 800;
    int bloques = 1;
    app.add_option("--segundos", segundos, "Length of each measurement");
    app.add_option("--conexiones", conexiones, "Numbers of connections");
    app.add_option("--guion", archivoDelGuion, "A script to run after every answer");
    app.add_flag("--pausado", soloPausado, "Only the paced measurement");
    app.add_option("--pausa", pausaMs, "Of the paced measurement, ms");
    app.add_option("--bloques", bloques, "Of each connection in the paced measurement, up to 240");
    app.add_flag("--saturado", soloSaturado, "Only the saturated measurements");
    app.add_flag("--hostil", soloHostil, "Only the lateness beside clients that mean harm");
    app.add_flag("--cliente", cliente, "With a client that is told of every value");
    CLI11_PARSE(app, argc, argv);
    kv::banco::permitirMuchosArchivos();
    std::ostringstream guion;
    if (!archivoDelGuion.empty()) guion << std::ifstream(archivoDelGuion).rdbuf();
    if (soloHostil) {
        kv::banco::hostil(conexiones.front(), segundos);
        return 0;
    }
    if (!soloPausado) {
        for (const int n : conexiones)
            kv::banco::saturado(n, segundos, guion.str(), cliente);
    }
    if (!soloSaturado) kv::banco::pausado(conexiones.back(), bloques, pausaMs, segundos * 2);
    return 0;
}
