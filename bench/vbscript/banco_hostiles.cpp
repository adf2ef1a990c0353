// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// By how much do scripts that try to hold the plant up exceed a budget of a whole second, and how
// much memory do they get? Each runs in a process of its own. With names behind it only those.

namespace {

using Reloj = std::chrono::steady_clock;
constexpr std::int64_t kPresupuestoMs = 1000;
constexpr std::int64_t kDeMasMs = 250;
constexpr unsigned kPacienciaS = 30;

std::int64_t milisegundos(Reloj::duration d) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(d).count();
}

class Mundo : public vbscript::Surroundings {
  public:
    explicit Mundo(std::string carpeta) : carpeta_(std::move(carpeta)) {}
    std::int64_t monotonicMs() override { return milisegundos(Reloj::now().time_since_epoch()); }
    vbscript::LocalTime wallClock() override { return {}; }
    int messageBox(std::string_view, int, std::string_view) override { return 1; }
    std::string inputBox(std::string_view, std::string_view, std::string_view p) override {
        return std::string(p);
    }
    std::shared_ptr<vbscript::Disk> disk() override {
        return std::make_shared<vbscript::FolderDisk>(carpeta_);
    }

  private:
    std::string carpeta_;
};

struct Caso {
    std::string nombre, texto;
};

std::vector<Caso> leerCasos() {
    std::vector<Caso> casos;
    std::ifstream in(KV_HOSTILES);
    std::string linea;
    while (std::getline(in, linea)) {
        if (linea.rfind("'# ", 0) == 0)
            casos.push_back({linea.substr(3), {}});
        else if (!casos.empty())
            casos.back().texto += linea + "\n";
    }
    return casos;
}

void correr(const Caso& caso, const std::string& carpeta) {
    ::alarm(kPacienciaS);
    Mundo mundo(carpeta);
    vbscript::Limits limites;
    limites.maxMilliseconds = kPresupuestoMs;
    vbscript::Engine motor(mundo, limites);
    const auto antes = Reloj::now();
    const bool bien = motor.addCode(caso.texto);
    const auto ms = milisegundos(Reloj::now() - antes);
    const std::string fin = bien ? "ended" : motor.error().description.substr(0, 50);
    std::printf("%7lld ms %6lld  %s", static_cast<long long>(ms),
                static_cast<long long>(std::max<std::int64_t>(ms - kPresupuestoMs, 0)),
                fin.c_str());
    std::fflush(stdout);
    ::_exit(ms > kPresupuestoMs + kDeMasMs ? 1 : 0);
}

/// Whether it kept to its budget.
bool medir(const Caso& caso) {
    std::string carpeta = (std::filesystem::temp_directory_path() / "kv_hostil_XXXXXX").string();
    if (::mkdtemp(carpeta.data()) == nullptr) return false;
    std::printf("%-36s", caso.nombre.c_str());
    std::fflush(stdout);
    const pid_t hijo = ::fork();
    if (hijo == 0) correr(caso, carpeta);
    int estado = 0;
    struct rusage uso = {};
    ::wait4(hijo, &estado, 0, &uso);
    std::filesystem::remove_all(carpeta);
    const bool bien = WIFEXITED(estado) && WEXITSTATUS(estado) == 0;
    std::printf("  %ld MB%s\n", uso.ru_maxrss / 1024,
                bien ? "" : (WIFEXITED(estado) ? "  TOO LONG" : "  KILLED"));
    return bien;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> pedidos(argv + 1, argv + argc);
    int total = 0;
    int malos = 0;
    for (const Caso& caso : leerCasos()) {
        const bool pedido = std::any_of(pedidos.begin(), pedidos.end(), [&](const auto& p) {
            return caso.nombre.find(p) != std::string::npos;
        });
        if (!pedidos.empty() && !pedido) continue;
        ++total;
        if (!medir(caso)) ++malos;
    }
    std::printf("%d scripts, %d beyond %lld ms over a budget of %lld ms\n", total, malos,
                static_cast<long long>(kDeMasMs), static_cast<long long>(kPresupuestoMs));
    return malos == 0 ? 0 : 1;
}
