// SPDX-License-Identifier: Apache-2.0
// Lives plants drawn from seeds through histories of faults, and prints what came of it. A seed
// that breaks a rule is printed with the shortest history that still breaks it.

#include "main/salida_de_traza.h"
#include "mundo/corrida.h"
#include "mundo/opciones.h"
#include "mundo/reduccion.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <sys/time.h>
#include <unistd.h>

namespace kv::mundo {
namespace {

// What a signal prints has to be ready beforehand.
char ultimaSemilla[64] = "";
std::size_t largoDeSemilla = 0;

void alMorir(int senal) {
    const char* que = senal == SIGPROF ? "hangs: seed " : "dies: seed ";
    if (write(STDOUT_FILENO, que, std::char_traits<char>::length(que)) < 0 ||
        write(STDOUT_FILENO, ultimaSemilla, largoDeSemilla) < 0)
        _exit(4);
    _exit(senal == SIGPROF ? 3 : 2);
}

void vigilar(std::uint64_t semilla, double segundos) {
    largoDeSemilla = static_cast<std::size_t>(std::snprintf(
        ultimaSemilla, sizeof ultimaSemilla, "%llu\n", static_cast<unsigned long long>(semilla)));
    itimerval plazo{};
    plazo.it_value.tv_sec = static_cast<long>(segundos);
    setitimer(ITIMER_PROF, &plazo, nullptr);
}

double cpu() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

std::vector<Episodio> parteDe(const std::vector<Episodio>& todo,
                              const std::vector<std::uint32_t>& numeros) {
    std::vector<Episodio> parte;
    for (const Episodio& s : todo) {
        if (std::find(numeros.begin(), numeros.end(), s.numero) != numeros.end())
            parte.push_back(s);
    }
    return parte;
}

void contarFallo(const Plan& plan, const Resultado& r, const std::vector<Episodio>& historia,
                 const Opciones& o) {
    std::printf("seed %llu: %s\n  %s\n", static_cast<unsigned long long>(plan.semilla),
                r.fallo.c_str(), plan.resumen().c_str());
    std::vector<Episodio> corta = historia;
    if (o.reducir) {
        vigilar(plan.semilla, 20 * o.cuelgueSegundos);
        const auto regla = [](const Resultado& x) { return x.fallo.substr(0, x.fallo.find(" (")); };
        // What came after it broke broke nothing.
        std::erase_if(corta, [&r](const Episodio& s) { return s.us / 1000 > r.simuladoMs; });
        corta = reducir(corta, [&](const std::vector<Episodio>& parte) {
            return regla(vivir(plan, parte)) == regla(r);
        });
    }
    std::printf("  shortest history found, %zu of %zu events: %s\n", corta.size(), historia.size(),
                vivir(plan, corta).fallo.c_str());
    std::string numeros;
    for (const Episodio& s : corta) {
        if (corta.size() <= 60) std::printf("    %s\n", textoDe(s).c_str());
        numeros += (numeros.empty() ? "" : ",") + std::to_string(s.numero);
    }
    if (corta.size() <= 60)
        std::printf("  again: mundo --semillas %llu --solo %s\n",
                    static_cast<unsigned long long>(plan.semilla),
                    numeros.empty() ? "-" : numeros.c_str());
    std::fflush(stdout);
}

int correr(const Opciones& o) {
    Resultado todo;
    std::uint64_t semillas = 0;
    int fallos = 0;
    const double desde = cpu();
    std::int64_t peorCalma = 0;
    for (std::uint64_t s = o.desde; s <= o.hasta; ++s) {
        vigilar(s, o.cuelgueSegundos);
        const Plan plan(s, o.tamano);
        std::vector<Episodio> historia = historiaDe(plan);
        if (o.solo) historia = parteDe(historia, *o.solo);
        SalidaDeTraza trazas(true);
        const Resultado r = vivir(plan, historia, o.trazas ? &trazas : nullptr);
        trazas.volcarTodo();
        if (o.detalle)
            std::printf("seed %llu: %s: %llu events, calm after %lld s %s\n",
                        static_cast<unsigned long long>(s), plan.resumen().c_str(),
                        static_cast<unsigned long long>(r.sucesos),
                        static_cast<long long>(r.calmaMs / 1000), r.fallo.c_str());
        std::fflush(stdout);
        if (!r.fallo.empty()) {
            ++fallos;
            contarFallo(plan, r, historia, o);
        }
        ++semillas;
        todo.simuladoMs += r.simuladoMs;
        todo.sucesos += r.sucesos;
        todo.faltas += r.faltas;
        todo.comprobadas += r.comprobadas;
        todo.intercambios += r.intercambios;
        todo.disculpas += r.disculpas;
        todo.recargas += r.recargas;
        peorCalma = std::max(peorCalma, r.calmaMs);
        if (o.primera && fallos > 0) break;
        if (o.horas > 0 && static_cast<double>(todo.simuladoMs) >= o.horas * 3.6e6) break;
        if (o.cpuSegundos > 0 && cpu() - desde >= o.cpuSegundos) break;
    }
    const double horas = static_cast<double>(todo.simuladoMs) / 3.6e6;
    const double minutos = (cpu() - desde) / 60;
    std::printf(
        "%llu seeds, %.1f simulated hours, %.3f CPU minutes: %.0f h/min\n"
        "%llu events, %llu exchanges, %llu faults (%.0f an hour), %llu checks, "
        "%llu reloads, longest calm %lld s, %llu values excused by noise\n%d seeds broke a rule\n",
        static_cast<unsigned long long>(semillas), horas, minutos, horas / minutos,
        static_cast<unsigned long long>(todo.sucesos),
        static_cast<unsigned long long>(todo.intercambios),
        static_cast<unsigned long long>(todo.faltas), static_cast<double>(todo.faltas) / horas,
        static_cast<unsigned long long>(todo.comprobadas),
        static_cast<unsigned long long>(todo.recargas), static_cast<long long>(peorCalma / 1000),
        static_cast<unsigned long long>(todo.disculpas), fallos);
    return fallos == 0 ? 0 : 1;
}

} // namespace
} // namespace kv::mundo

int main(int argc, char** argv) {
    const auto opciones = kv::mundo::leerOpciones(argc, argv);
    if (!opciones) {
        std::printf("mundo [--semillas A-B] [--horas N] [--cpu SECONDS] [--cuelgue SECONDS] "
                    "[--tamano 8x10]\n"
                    "      [--solo EVENT,EVENT,... | -] [--sin-reducir] [--primera] [--detalle] "
                    "[--trazas]\n");
        return 2;
    }
    for (const int senal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGPROF})
        std::signal(senal, kv::mundo::alMorir);
    return kv::mundo::correr(*opciones);
}
