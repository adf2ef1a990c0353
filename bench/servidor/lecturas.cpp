// SPDX-License-Identifier: Apache-2.0
// What reading a variable by its address costs the server in plants of 10 to 100,000 variables: the
// same ten of them, and addresses all over the plant, of which no cache holds a large one.
//
//     lecturas

#include "engine/motor.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

namespace kv::banco {
namespace {

constexpr int kLecturas = 400'000;

double ahoraNs() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e9 + static_cast<double>(t.tv_nsec);
}

double medir(int variables, std::size_t leidas, const std::string& carpeta) {
    BucleEpoll bucle;
    ArchivosReales archivos;
    Motor motor(bucle, archivos, carpeta);
    std::vector<std::string> direcciones;
    for (int i = 0; i < variables; ++i) {
        BloqueLectura b;
        b.clave = "1." + std::to_string(i / 200 + 1) + "." + std::to_string(40001 + i % 200);
        b.valor = i;
        b.estado = 6;
        direcciones.push_back(b.clave);
        const auto fila = motor.vista.lstViewVariables.agregar(b.clave, i);
        b.indice = static_cast<Indice>(i);
        b.filaVariable = fila;
        motor.tablas.bloques.agregar(std::move(b));
    }
    std::size_t bytes = 0;
    const double antes = ahoraNs();
    for (int i = 0; i < kLecturas; ++i) {
        const auto cual = static_cast<std::size_t>(i) * 7919U % leidas;
        bytes += motor.servidor.obtenerTramaParaENVIAR(direcciones[cual]).size();
    }
    const double ns = (ahoraNs() - antes) / kLecturas;
    if (bytes == 0) std::printf("nothing was read\n");
    return ns;
}

} // namespace
} // namespace kv::banco

int main() {
    std::string carpeta = (std::filesystem::temp_directory_path() / "kvbancoXXXXXX").string();
    if (mkdtemp(carpeta.data()) == nullptr) return 1;
    const double base = kv::banco::medir(10, 10, carpeta);
    for (const int n : {10, 1000, 10'000, 100'000}) {
        const double diez = kv::banco::medir(n, 10, carpeta);
        const double todas = kv::banco::medir(n, static_cast<std::size_t>(n), carpeta);
        std::printf("%6d variables: %6.0f ns a read of ten of them (%.2f times), %6.0f ns all over "
                    "(%.2f times)\n",
                    n, diez, diez / base, todas, todas / base);
    }
    std::filesystem::remove_all(carpeta);
    return 0;
}
