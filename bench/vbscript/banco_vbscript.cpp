// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

// The programs of programas/, once added and then run again as the driver does after every answer,
// and the publication of values. comparar.py sets them beside other languages.

namespace {

class Mundo : public vbscript::Surroundings {
  public:
    std::int64_t monotonicMs() override {
        const auto t = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(t).count();
    }
    vbscript::LocalTime wallClock() override { return {}; }
    int messageBox(std::string_view, int, std::string_view) override { return 1; }
    std::string inputBox(std::string_view, std::string_view, std::string_view) override {
        return {};
    }
};

std::string leer(const std::filesystem::path& ruta) {
    std::ifstream in(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void correr(benchmark::State& estado, const std::string& texto) {
    Mundo mundo;
    vbscript::Engine motor(mundo);
    for (auto _ : estado) {
        if (!motor.addCode(texto)) estado.SkipWithError(motor.error().description.c_str());
    }
    if (motor.compilations() > 1) estado.SkipWithError("compiled more than once");
}

// Each text differs in its last comment, so that no text is found among those compiled before.
void compilar(benchmark::State& estado, const std::string& texto) {
    Mundo mundo;
    vbscript::Engine motor(mundo);
    std::uint64_t n = 0;
    for (auto _ : estado) {
        const std::string distinto = texto + "'" + std::to_string(++n);
        if (!motor.check(distinto)) estado.SkipWithError(motor.error().description.c_str());
    }
}

void publicar(benchmark::State& estado) {
    Mundo mundo;
    vbscript::Engine motor(mundo);
    std::vector<vbscript::Engine::Slot> lugares;
    for (int k = 0; k < estado.range(0); ++k)
        lugares.push_back(*motor.global("MW_" + std::to_string(k)));
    std::shuffle(lugares.begin(), lugares.end(), std::mt19937(7));
    std::size_t k = 0;
    double v = 0;
    for (auto _ : estado) {
        motor.setNumber(lugares[k], v += 1);
        if (++k == lugares.size()) k = 0;
    }
}
BENCHMARK(publicar)->Arg(10)->Arg(1000)->Arg(100000)->Arg(200000);

void registrar() {
    const std::filesystem::path carpeta = KV_PROGRAMAS;
    for (const auto& e : std::filesystem::directory_iterator(carpeta)) {
        if (e.path().extension() != ".vbs") continue;
        const std::string nombre = e.path().stem().string();
        const std::string texto = leer(e.path());
        benchmark::RegisterBenchmark(nombre.c_str(), correr, texto)->MinTime(0.2);
        if (nombre != "planta") continue;
        benchmark::RegisterBenchmark("planta_compilar", compilar, texto)->MinTime(0.2);
    }
}

} // namespace

int main(int argc, char** argv) {
    registrar();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
