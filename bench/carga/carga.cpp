// SPDX-License-Identifier: Apache-2.0
// How long a plant takes to load and what it holds in memory, part by part, for two sizes of plant,
// whose ratio tells whether anything grows faster than the plant.
//
//     carga
//
// Memory is what the allocator has handed out (mallinfo2), after minus before:
//   - a variable: all that a block of one variable holds in the running driver: its records in the
//     tables, its rows in the lists, its trace box and timer, its script variables, the indices;
//     not the configuration as it was read, which is given back when the plant stands;
//   - a connection: its record with one station, socket (a simulated one), two timers, row and
//     trace box; without blocks. What the kernel holds for a socket is not in it.

#include "config/driver.h"
#include "config/validacion.h"
#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <memory>
#include <string>

namespace kv::banco {
namespace {

struct Medida {
    double leerMs = 0;
    double validarMs = 0;
    double construirMs = 0;
    double memoria = 0;
    [[nodiscard]] double total() const { return leerMs + validarMs + construirMs; }
};

double ahoraMs() {
    const auto t = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(t).count();
}

double enUso() {
    const auto m = mallinfo2();
    return static_cast<double>(m.uordblks + m.hblkhd);
}

/// Blocks of eight keys, spread over the stations of the connections.
std::string planta(int conexiones, int estacionesDeCada, int bloques) {
    std::string t = "[CONFIG]\r\nCANT_PUERTOS=1\r\n[PUERTO1]\r\nNUMERO=1\r\nTIME_OUT=5\r\n";
    const auto clave = [&t](const char* que, int n, const char* sufijo, const std::string& valor) {
        t.append(que).append(std::to_string(n)).append(sufijo).append("=").append(valor);
        t += "\r\n";
    };
    const int estaciones = conexiones * estacionesDeCada;
    t += "CantEsclavos=" + std::to_string(estaciones) + "\r\n";
    for (int e = 0; e < estaciones; ++e) {
        const int c = e / estacionesDeCada;
        clave("Esclavo", e, "_Numero", std::to_string(e + 1));
        clave("Esclavo", e, "_Ip",
              "10.0." + std::to_string(c / 250) + "." + std::to_string(c % 250 + 1));
        clave("Esclavo", e, "_Puerto", "502");
        clave("Esclavo", e, "_Indice", std::to_string(e % estacionesDeCada + 1));
    }
    t += "CantBloques=" + std::to_string(bloques) + "\r\n";
    for (int b = 0; b < bloques; ++b) {
        char direccion[16];
        std::snprintf(direccion, sizeof direccion, "%02X", static_cast<unsigned>(b / estaciones));
        clave("Bloque", b, "_Bloque", "B" + std::to_string(b));
        clave("Bloque", b, "_PLC", std::to_string(b % estaciones + 1));
        clave("Bloque", b, "_Quantity", "1");
        clave("Bloque", b, "_StarAdrees", direccion);
        clave("Bloque", b, "_ScanTime", "2.5");
        clave("Bloque", b, "_Nivel", "1");
        clave("Bloque", b, "_Numero", std::to_string(b));
        clave("Bloque", b, "_ActiveDefault", "1");
    }
    return t;
}

Medida medir(int conexiones, int estacionesDeCada, int bloques) {
    const std::string texto = planta(conexiones, estacionesDeCada, bloques);
    Medida m;
    BucleSimulado bucle;
    ArchivosSimulados archivos;
    auto motor = std::make_unique<Motor>(bucle, archivos, "/kv");
    const double antes = enUso();
    {
        ListasDeConfiguracion listas;
        Problemas problemas;
        const double t0 = ahoraMs();
        leerDriverDeTexto(texto, "D.ini", listas, problemas);
        const double t1 = ahoraMs();
        const Validacion validacion = validar(listas, problemas);
        const double t2 = ahoraMs();
        levantarConfiguracion(motor->modelo, listas, validacion);
        m = {t1 - t0, t2 - t1, ahoraMs() - t2, 0};
        if (!problemas.ninguno())
            std::printf("unexpected: %s\n", textoDeProblema(problemas.lista().front()).c_str());
    }
    m.memoria = enUso() - antes;
    const auto hechos = static_cast<int>(motor->tablas.bloques.limiteSuperior());
    if (hechos != bloques) std::printf("unexpected: %d blocks of %d built\n", hechos, bloques);
    return m;
}

/// The best of some: what the machine did beside does not count for the plant.
Medida mejorDe(int veces, int conexiones, int estacionesDeCada, int bloques) {
    Medida mejor = medir(conexiones, estacionesDeCada, bloques);
    for (int i = 1; i < veces; ++i) {
        const Medida m = medir(conexiones, estacionesDeCada, bloques);
        if (m.total() < mejor.total()) mejor = m;
    }
    return mejor;
}

void mostrarTiempos(int bloques, const Medida& m) {
    std::printf("%6d blocks: reading %7.1f ms  validation %7.1f ms  model, publication and frames "
                "%7.1f ms  together %7.1f ms  %.2f us a block\n",
                bloques, m.leerMs, m.validarMs, m.construirMs, m.total(),
                m.total() * 1000 / bloques);
}

} // namespace
} // namespace kv::banco

int main() {
    using namespace kv::banco;
    constexpr int kConexiones = 50;
    constexpr int kEstacionesDeCada = 10;
    constexpr int kChica = 10'000;
    constexpr int kGrande = 100'000;
    constexpr int kMuchas = 5'000;
    const Medida sinBloques = medir(kMuchas, 1, 0);
    const Medida vacia = medir(kConexiones, kEstacionesDeCada, 0);
    const Medida chica = mejorDe(5, kConexiones, kEstacionesDeCada, kChica);
    const Medida grande = mejorDe(3, kConexiones, kEstacionesDeCada, kGrande);
    mostrarTiempos(kChica, chica);
    mostrarTiempos(kGrande, grande);
    std::printf("time per block at %d, relative to %d: %.2f (target 2.5 or less)\n", kGrande,
                kChica, grande.total() / kGrande / (chica.total() / kChica));
    std::printf("together at %d: %.2f s (target 3 or less)\n", kGrande, grande.total() / 1000);
    std::printf("memory per variable: %.0f bytes at %d, %.0f at %d (target 1536 or less)\n",
                (grande.memoria - vacia.memoria) / kGrande, kGrande,
                (chica.memoria - vacia.memoria) / kChica, kChica);
    std::printf("memory per connection without blocks: %.0f bytes at %d (target 2048 or less)\n",
                sinBloques.memoria / kMuchas, kMuchas);
    return 0;
}
