// SPDX-License-Identifier: Apache-2.0
// A month of a small plant: what it holds in memory on its second day is what it holds at the end.

#include "memoria.h"

#include "apoyo/planta.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>

namespace kv::fallas {
namespace {

constexpr double kHoraMs = 3'600'000;
constexpr long kCrecimientoMaximo = 256L * 1024;

/// What the driver has put on the simulated disk is not what it holds.
void vaciarDisco(Planta& planta) {
    for (const std::string& archivo : planta.archivos.en("/kv/LOGS_DRIVER"))
        planta.archivos.borrar(archivo);
}

/// What traffic would push out of the ring is kept up to a number that a month may not reach.
long enApartados(const Sucesos& sucesos) {
    std::size_t cuantos = 0;
    for (std::size_t k = 0; k < kApartados; ++k) {
        const auto& todos = sucesos.masViejos(static_cast<Apartado>(k)).todos();
        EXPECT_LE(todos.size(), Apartados::kMaximo);
        cuantos += todos.size();
    }
    return static_cast<long>(cuantos * sizeof(Apartados::Uno));
}

} // namespace

TEST(Larga, UnMesNoPideMasMemoriaQueDosDias) {
    Configuracion c;
    c.puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "10").bloque(1, "11", "15");
    c.puerto().estacion(2, "10.0.0.2", 2).bloque(2, "10", "10").bloque(2, "12", "60");
    Planta planta(c);
    planta.archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip",
                          "n = n + 1\nIf n Mod 500 = 0 Then mw.writeMW \"1.1.11\", n Mod 1000\n");
    // Values change all the time; now and then a station keeps quiet, or its link is lost.
    std::uint64_t pedidos = 0;
    for (const char* ip : {"10.0.0.1", "10.0.0.2"}) {
        Estaciones& e = planta.en(ip);
        e.demora = [&e, &pedidos](const Solicitud& s) -> std::optional<double> {
            e.pedidos.clear();
            ++pedidos;
            e.registros[{s[1], s[3]}] = static_cast<int>(pedidos % 1000);
            if (pedidos % 5000 < 5) return std::nullopt;
            if (pedidos % 20'000 == 7777) e.cortar();
            return 20;
        };
    }
    planta.arrancarYConectar();
    const auto dias = [&planta](int n) {
        for (int h = 0; h < n * 24; ++h) {
            planta.avanzar(kHoraMs);
            vaciarDisco(planta);
        }
        return Memoria::bytesVivos() - enApartados(planta.motor.sucesos);
    };
    const int total = std::getenv("KV_TODO") != nullptr ? 365 : 30;
    const long segundo = dias(2);
    const long final = dias(total - 2);
    std::cout << total << " days, " << pedidos << " requests: " << segundo
              << " bytes held after day 2, " << final << " at the end\n";
    EXPECT_GT(pedidos, std::uint64_t{10'000} * total);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(planta.ok(i)) << i;
    EXPECT_LT(final - segundo, kCrecimientoMaximo);
}

} // namespace kv::fallas
