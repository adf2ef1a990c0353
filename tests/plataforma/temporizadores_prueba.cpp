// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

class Temporizadores : public testing::Test {
  protected:
    auto crear(char nombre) {
        return bucle.crearTemporizador([this, nombre] { tics += nombre; });
    }
    BucleSimulado bucle;
    std::string tics;
};

/// Timers that tick once, in a list that is searched from end to end.
struct Lista {
    struct Uno {
        std::int64_t vence = 0, orden = 0, intervalo = 0;
        bool encendido = false;
    };
    std::vector<Uno> todos;
    std::int64_t ahora = 0, armados = 0;

    void armar(Uno& u) {
        u.vence = ahora + u.intervalo;
        u.orden = ++armados;
    }
    /// Which, and when.
    std::vector<std::pair<std::size_t, std::int64_t>> avanzar(std::int64_t hasta) {
        std::vector<std::pair<std::size_t, std::int64_t>> salen;
        const auto toca = [&](const Uno& u) {
            return u.encendido && u.intervalo > 0 && u.vence <= hasta;
        };
        const auto antes = [&](const Uno& a, const Uno& b) {
            if (toca(a) != toca(b)) return toca(a);
            return std::pair(a.vence, a.orden) < std::pair(b.vence, b.orden);
        };
        for (;;) {
            const auto primero = std::min_element(todos.begin(), todos.end(), antes);
            if (!toca(*primero)) break;
            primero->encendido = false;
            salen.emplace_back(primero - todos.begin(), primero->vence);
        }
        ahora = hasta;
        return salen;
    }
};

} // namespace

TEST_F(Temporizadores, ReglasDelControl) {
    const auto t = crear('a');
    t->habilitar(true);
    bucle.avanzar(10'000);
    EXPECT_EQ(tics, "") << "interval 0 never ticks";
    t->fijarIntervalo(100);
    bucle.avanzar(99);
    t->habilitar(true); // already running: the countdown goes on
    bucle.avanzar(1);
    EXPECT_EQ(tics, "a");
    bucle.avanzar(60);
    t->fijarIntervalo(100); // running: the countdown starts again
    bucle.avanzar(99);
    EXPECT_EQ(tics, "a");
    bucle.avanzar(1);
    EXPECT_EQ(tics, "aa");
    t->habilitar(false);
    bucle.avanzar(1000);
    EXPECT_EQ(tics, "aa");
}

TEST_F(Temporizadores, UnAnioDuraUnAnio) {
    constexpr std::int64_t kAnioMs = 365 * 86'400'000LL;
    const auto t = crear('a');
    t->rearmar(kAnioMs);
    bucle.avanzar(kAnioMs - 1);
    EXPECT_EQ(tics, "");
    bucle.avanzar(1);
    EXPECT_EQ(tics, "a");
}

TEST_F(Temporizadores, UnoAtrasadoTicaUnaSolaVezYSigueDesdeAhi) {
    const auto t = crear('a');
    t->rearmar(100);
    bucle.demorar(1050);
    bucle.avanzar(0);
    EXPECT_EQ(tics, "a");
    bucle.avanzar(99);
    EXPECT_EQ(tics, "a");
    bucle.avanzar(1);
    EXPECT_EQ(tics, "aa");
}

TEST_F(Temporizadores, EnOrdenDeVencimientoYLuegoDeArmado) {
    const auto a = crear('a');
    const auto b = crear('b');
    const auto c = crear('c');
    b->rearmar(20);
    a->rearmar(10);
    c->rearmar(10);
    bucle.demorar(25);
    bucle.avanzar(0);
    EXPECT_EQ(tics, "acb");
}

TEST_F(Temporizadores, PuedeDestruirseEnSuPropioTicYDestruirAOtros) {
    std::unique_ptr<Temporizador> propio;
    auto otro = crear('x');
    propio = bucle.crearTemporizador([&] {
        otro.reset();
        propio.reset();
        tics += '.';
    });
    propio->rearmar(5);
    otro->rearmar(5);
    bucle.avanzar(100);
    EXPECT_EQ(tics, ".");
    EXPECT_EQ(bucle.temporizadoresEncendidos(), 0U);
}

// Intervals and waits lie around every length at which the queue files otherwise, and far beyond.
TEST_F(Temporizadores, MuchosAlAzarSalenComoDeUnaLista) {
    constexpr std::size_t kCuantos = 60;
    std::mt19937 azar(7);
    Lista lista{.todos = std::vector<Lista::Uno>(kCuantos), .ahora = bucle.reloj().monotonicoMs()};
    std::vector<std::unique_ptr<Temporizador>> todos;
    std::vector<std::pair<std::size_t, std::int64_t>> salieron;
    std::size_t cuantos = 0;
    const auto nuevo = [&](std::size_t k) {
        auto t = bucle.crearTemporizador(
            [&salieron, this, k] { salieron.emplace_back(k, bucle.reloj().monotonicoMs()); });
        t->tocarUnaVez(); // a day is many ticks of a short one
        return t;
    };
    const auto algunTiempo = [&]() -> std::int64_t {
        constexpr std::array<std::int64_t, 8> kAlrededor{
            25, 64, 4096, 8192, 12'288, 3'600'000, 4096 * 4096, 3 * 4096 * 4096};
        return kAlrededor[azar() % kAlrededor.size()] + static_cast<std::int64_t>(azar() % 48) - 24;
    };
    for (std::size_t k = 0; k < kCuantos; ++k)
        todos.push_back(nuevo(k));
    for (int paso = 0; paso < 6000; ++paso) {
        const std::size_t k = azar() % kCuantos;
        Lista::Uno& u = lista.todos[k];
        switch (azar() % 8) {
        case 0:
            todos[k] = nuevo(k);
            u = {};
            break;
        case 1:
        case 2:
            todos[k]->habilitar(false);
            u.encendido = false;
            break;
        case 3:
            if (!u.encendido) lista.armar(u);
            todos[k]->habilitar(true);
            u.encendido = true;
            break;
        default:
            u.intervalo = algunTiempo();
            u.encendido = true;
            lista.armar(u);
            todos[k]->rearmar(u.intervalo);
        }
        if (azar() % 4 != 0) continue;
        const std::int64_t espera = azar() % 2 == 0 ? azar() % 60 : algunTiempo();
        bucle.avanzar(espera);
        ASSERT_EQ(salieron, lista.avanzar(lista.ahora + espera)) << "step " << paso;
        cuantos += salieron.size();
        salieron.clear();
    }
    EXPECT_GT(cuantos, 1000U);
}

// Each of these leaves its old place behind; all places are made anew in between.
TEST_F(Temporizadores, ArmarloParaAntesMilesDeVecesNoLeQuitaLugarANadie) {
    std::string salieron;
    std::vector<std::unique_ptr<Temporizador>> todos;
    for (const char letra : {'a', 'b', 'c', 'd'}) {
        todos.push_back(bucle.crearTemporizador([&salieron, letra] { salieron += letra; }));
        todos.back()->tocarUnaVez();
    }
    todos[0]->rearmar(70);
    todos[1]->rearmar(5 * 3'600'000);
    todos[2]->rearmar(9'000'000);
    todos[2]->habilitar(false);
    for (const std::int64_t cadaCuanto : {5000, 1})
        for (std::int64_t veces = 3000; veces >= 1; --veces)
            todos[3]->rearmar(50 + veces * cadaCuanto);
    todos[3]->rearmar(50);
    EXPECT_EQ(bucle.temporizadoresEncendidos(), 3U);
    bucle.avanzar(60);
    EXPECT_EQ(salieron, "d");
    bucle.avanzar(20);
    EXPECT_EQ(salieron, "da");
    bucle.avanzar(5 * 3'600'000);
    EXPECT_EQ(salieron, "dab");
}

} // namespace kv
