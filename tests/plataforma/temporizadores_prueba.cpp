// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

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

// Beside a list that is searched from end to end. Intervals and waits lie around every length at
// which the queue files otherwise, and far beyond all of them.
TEST_F(Temporizadores, MuchosAlAzarSalenComoDeUnaLista) {
    struct DeLista {
        std::int64_t vence = 0, orden = 0, intervalo = 0;
        bool encendido = false;
    };
    constexpr std::size_t kCuantos = 60;
    std::mt19937 azar(7);
    std::vector<DeLista> lista(kCuantos);
    std::vector<std::unique_ptr<Temporizador>> todos;
    std::vector<std::pair<std::size_t, std::int64_t>> salieron, debian;
    std::int64_t ahora = 0, orden = 0;
    std::size_t cuantos = 0;
    const auto nuevo = [&](std::size_t k) {
        auto t = bucle.crearTemporizador(
            [&salieron, this, k] { salieron.emplace_back(k, bucle.reloj().monotonicoMs()); });
        t->tocarUnaVez(); // a day is many ticks of a short one
        return t;
    };
    const auto armar = [&](DeLista& d) {
        d.vence = ahora + d.intervalo;
        d.orden = ++orden;
    };
    const auto algunTiempo = [&]() -> std::int64_t {
        constexpr std::array<std::int64_t, 8> kAlrededor{
            25, 64, 4096, 8192, 12'288, 3'600'000, 4096 * 4096, 3 * 4096 * 4096};
        return kAlrededor[azar() % kAlrededor.size()] + static_cast<std::int64_t>(azar() % 48) - 24;
    };
    for (std::size_t k = 0; k < kCuantos; ++k)
        todos.push_back(nuevo(k));
    ahora = bucle.reloj().monotonicoMs();
    for (int paso = 0; paso < 6000; ++paso) {
        const std::size_t k = azar() % kCuantos;
        DeLista& d = lista[k];
        switch (azar() % 8) {
        case 0:
            todos[k] = nuevo(k);
            d = {};
            break;
        case 1:
        case 2:
            todos[k]->habilitar(false);
            d.encendido = false;
            break;
        case 3:
            if (!d.encendido) armar(d);
            todos[k]->habilitar(true);
            d.encendido = true;
            break;
        default:
            d.intervalo = algunTiempo();
            d.encendido = true;
            armar(d);
            todos[k]->rearmar(d.intervalo);
        }
        if (azar() % 4 != 0) continue;
        const std::int64_t hasta = ahora + (azar() % 2 == 0 ? azar() % 60 : algunTiempo());
        for (;;) {
            std::size_t primero = kCuantos;
            for (std::size_t i = 0; i < kCuantos; ++i) {
                const DeLista& e = lista[i];
                if (!e.encendido || e.intervalo == 0 || e.vence > hasta) continue;
                if (primero == kCuantos || std::pair(e.vence, e.orden) <
                                               std::pair(lista[primero].vence, lista[primero].orden))
                    primero = i;
            }
            if (primero == kCuantos) break;
            ahora = lista[primero].vence;
            lista[primero].encendido = false;
            debian.emplace_back(primero, ahora);
        }
        bucle.avanzar(hasta - bucle.reloj().monotonicoMs());
        ahora = hasta;
        ASSERT_EQ(salieron, debian) << "step " << paso;
        cuantos += salieron.size();
        salieron.clear();
        debian.clear();
    }
    EXPECT_GT(cuantos, 1000U);
}

} // namespace kv
