// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/fallas.h"
#include "SimuladorKV2200/salida.h"

#include <gtest/gtest.h>

namespace kv::simulador {
namespace {

const Respuesta kRespuesta{7, 1, 0, 0x1F, 0, 1, 5, 0x26};

Fallas fallas(std::initializer_list<std::pair<const char*, const char*>> opciones) {
    Fallas f;
    for (const auto& [nombre, valor] : opciones)
        EXPECT_EQ(fijarFalla(f, nombre, valor), "");
    return f;
}

std::string juntos(const std::vector<Trozo>& trozos) {
    std::string t;
    for (const Trozo& x : trozos)
        t += x.bytes;
    return t;
}

} // namespace

TEST(SimuladorFallas, SinFallasSaleLaRespuestaEntera) {
    Azar azar(1);
    const auto trozos = planear(kRespuesta, false, {}, 0, azar);
    ASSERT_EQ(trozos.size(), 1U);
    EXPECT_EQ(trozos[0].esperaMs, 0);
    EXPECT_EQ(trozos[0].bytes, std::string(kRespuesta.begin(), kRespuesta.end()));
}

TEST(SimuladorFallas, ProbabilidadesYLimites) {
    const Fallas f = fallas({{"retardo-ms", "100-300"},
                             {"sin-respuesta", "0.2"},
                             {"basura", "0.3"},
                             {"fragmentar", "1"},
                             {"perder-respuesta-de-escritura", "0.5"}});
    const std::string buena(kRespuesta.begin(), kRespuesta.end());
    Azar azar(7);
    int calladas = 0;
    int escriturasCalladas = 0;
    int sucias = 0;
    for (int i = 0; i < 10'000; ++i) {
        const bool escritura = i % 2 == 1;
        const auto trozos = planear(kRespuesta, escritura, f, 0, azar);
        if (trozos.empty()) {
            ++(escritura ? escriturasCalladas : calladas);
            continue;
        }
        EXPECT_TRUE(trozos[0].esperaMs >= 100 && trozos[0].esperaMs <= 300);
        EXPECT_TRUE(trozos.size() >= 2 && trozos.size() <= 4);
        for (std::size_t t = 1; t < trozos.size(); ++t)
            EXPECT_TRUE(trozos[t].esperaMs >= 1 && trozos[t].esperaMs <= 20);
        for (const Trozo& t : trozos)
            EXPECT_FALSE(t.bytes.empty());
        const std::string todo = juntos(trozos);
        EXPECT_TRUE(todo.size() >= 8 && todo.size() <= 16);
        // Garbage stands before a whole answer, or one byte is wrong.
        if (todo != buena) {
            ++sucias;
            EXPECT_TRUE(todo.size() == 8 || todo.ends_with(buena));
        }
    }
    EXPECT_NEAR(calladas, 1000, 150);
    EXPECT_NEAR(escriturasCalladas, 3000, 200);
    EXPECT_NEAR(sucias, 1800, 200);
}

TEST(SimuladorFallas, UnaSemillaRepiteSusFallas) {
    const Fallas f = fallas({{"retardo-ms", "0-50"},
                             {"basura", "0.5"},
                             {"fragmentar", "1"},
                             {"sin-respuesta", "0.1"},
                             {"cortar-cada", "10"}});
    const auto corrida = [&f](std::uint64_t semilla) {
        Azar azar(semilla);
        std::string t = std::to_string(vidaDeEnlaceMs(f, azar));
        for (int i = 0; i < 50; ++i) {
            for (const Trozo& x : planear(kRespuesta, false, f, 0, azar))
                t += std::to_string(x.esperaMs) + x.bytes;
        }
        return t;
    };
    EXPECT_EQ(corrida(3), corrida(3));
    EXPECT_NE(corrida(3), corrida(4));
}

TEST(SimuladorFallas, AusenciasYCortes) {
    const Fallas f = fallas({{"ausente", "5/20"}, {"cortar-cada", "10"}});
    Azar azar(1);
    std::string calla;
    for (std::int64_t s = 0; s < 40; ++s)
        calla += planear(kRespuesta, false, f, s * 1000, azar).empty() ? '-' : 'r';
    EXPECT_EQ(calla, "rrrrrrrrrrrrrrr-----rrrrrrrrrrrrrrr-----");
    for (int i = 0; i < 100; ++i) {
        const auto ms = vidaDeEnlaceMs(f, azar);
        EXPECT_TRUE(ms >= 5'000 && ms <= 15'000);
    }
    EXPECT_EQ(vidaDeEnlaceMs({}, azar), 0);
}

TEST(SimuladorFallas, LasRespuestasSalenEnSuOrden) {
    Salida s;
    s.agregar({{100, "a"}, {5, "b"}}, 0);
    s.agregar({{0, "c"}}, 10); // ready at once, and behind a slow one
    s.agregar({{200, "d"}}, 10);
    const auto hasta = [&s](std::int64_t ms) {
        std::string t;
        while (const auto x = s.tomar(ms))
            t += *x;
        return t;
    };
    EXPECT_EQ(s.proximo(), 100);
    EXPECT_EQ(hasta(99), "");
    EXPECT_EQ(hasta(100), "a");
    EXPECT_EQ(hasta(105), "bc");
    EXPECT_EQ(hasta(209), "");
    EXPECT_EQ(hasta(210), "d");
    EXPECT_FALSE(s.proximo());
    s.agregar({{0, "e"}}, 300);
    EXPECT_EQ(hasta(300), "e");
}

} // namespace kv::simulador
