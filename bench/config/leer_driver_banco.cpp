// SPDX-License-Identifier: Apache-2.0
// Reading a driver configuration of many blocks beside its floor: one linear pass that dispatches
// keys into records of plain numbers and views, without checking anything.

#include "config/driver.h"
#include "config/validacion.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string planta(int bloques) {
    constexpr int kPorEstacion = 50;
    const int estaciones = (bloques + kPorEstacion - 1) / kPorEstacion;
    std::string t = "[CONFIG]\r\nCANT_PUERTOS=1\r\n[PUERTO1]\r\nNUMERO=1\r\nTIME_OUT=5\r\n";
    const auto clave = [&t](const char* que, int n, const char* sufijo, const std::string& valor) {
        t.append(que).append(std::to_string(n)).append(sufijo).append("=").append(valor);
        t += "\r\n";
    };
    t += "CantEsclavos=" + std::to_string(estaciones) + "\r\n";
    for (int e = 0; e < estaciones; ++e) {
        clave("Esclavo", e, "_Numero", std::to_string(e + 1));
        clave("Esclavo", e, "_Ip",
              "10.0." + std::to_string(e / 250) + "." + std::to_string(e % 250));
        clave("Esclavo", e, "_Puerto", "502");
        clave("Esclavo", e, "_Indice", std::to_string(e % 100));
    }
    t += "CantBloques=" + std::to_string(bloques) + "\r\n";
    for (int b = 0; b < bloques; ++b) {
        constexpr char kCifras[] = "0123456789ABCDEF";
        clave("Bloque", b, "_Bloque", "B" + std::to_string(b));
        clave("Bloque", b, "_PLC", std::to_string(b / kPorEstacion + 1));
        clave("Bloque", b, "_Quantity", "1");
        clave("Bloque", b, "_StarAdrees",
              {kCifras[b % kPorEstacion / 16], kCifras[b % kPorEstacion % 16]});
        clave("Bloque", b, "_ScanTime", "2.5");
        clave("Bloque", b, "_Nivel", "1");
        clave("Bloque", b, "_Numero", std::to_string(b));
        clave("Bloque", b, "_ActiveDefault", "1");
    }
    return t;
}

struct Registro {
    std::string_view textos[2];
    double numeros[6];
};

/// The floor: the line, its "=", the entry's number, the field by its first letters, the value.
std::size_t piso(const std::string& t, std::vector<Registro>& registros) {
    const char* p = t.data();
    const char* const fin = p + t.size();
    while (p < fin) {
        const char* salto = static_cast<const char*>(std::memchr(p, '\n', fin - p));
        if (salto == nullptr) salto = fin;
        const char* const corte = salto > p && salto[-1] == '\r' ? salto - 1 : salto;
        if (corte - p > 8 && std::memcmp(p, "Bloque", 6) == 0) {
            std::uint32_t n = 0;
            const char* sufijo = std::from_chars(p + 6, corte, n).ptr + 1;
            const char* igual = static_cast<const char*>(std::memchr(sufijo, '=', corte - sufijo));
            if (n >= registros.size()) registros.resize(n + 1);
            Registro& r = registros[n];
            const std::string_view valor(igual + 1, static_cast<std::size_t>(corte - igual - 1));
            int campo = 0;
            switch (*sufijo) {
            case 'B':
                r.textos[0] = valor;
                campo = -1;
                break;
            case 'P':
                campo = 0;
                break;
            case 'Q':
                campo = 1;
                break;
            case 'S':
                campo = sufijo[1] == 'c' ? 2 : -1;
                if (campo < 0) r.textos[1] = valor;
                break;
            case 'N':
                campo = sufijo[1] == 'i' ? 3 : 4;
                break;
            default:
                campo = 5;
                break;
            }
            if (campo >= 0) std::from_chars(valor.data(), corte, r.numeros[campo]);
        }
        p = salto + 1;
    }
    return registros.size();
}

void Piso(benchmark::State& estado) {
    const std::string t = planta(static_cast<int>(estado.range(0)));
    for (auto _ : estado) {
        std::vector<Registro> registros;
        benchmark::DoNotOptimize(piso(t, registros));
    }
    estado.SetBytesProcessed(static_cast<std::int64_t>(t.size()) * estado.iterations());
}

void LeerDriver(benchmark::State& estado) {
    const std::string t = planta(static_cast<int>(estado.range(0)));
    for (auto _ : estado) {
        kv::ListasDeConfiguracion listas;
        kv::Problemas problemas;
        kv::leerDriverDeTexto(t, "D.ini", listas, problemas);
        benchmark::DoNotOptimize(listas.bloques.size());
    }
    estado.SetBytesProcessed(static_cast<std::int64_t>(t.size()) * estado.iterations());
}

void Validar(benchmark::State& estado) {
    kv::ListasDeConfiguracion listas;
    kv::Problemas problemas;
    kv::leerDriverDeTexto(planta(static_cast<int>(estado.range(0))), "D.ini", listas, problemas);
    for (auto _ : estado)
        benchmark::DoNotOptimize(kv::validar(listas, problemas).bloquesConstruidos);
}

BENCHMARK(Piso)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(LeerDriver)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(Validar)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
