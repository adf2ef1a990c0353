// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

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

TEST_F(Temporizadores, MilesEncendidosYApagadosAlAzarSalenEnOrden) {
    std::mt19937 azar(7);
    std::vector<std::unique_ptr<Temporizador>> todos;
    std::int64_t ultimo = 0;
    int veces = 0;
    for (int i = 0; i < 2000; ++i) {
        todos.push_back(bucle.crearTemporizador([&] {
            EXPECT_LE(ultimo, bucle.reloj().monotonicoUs());
            ultimo = bucle.reloj().monotonicoUs();
            ++veces;
            todos[azar() % todos.size()]->rearmar(1 + azar() % 50);
            todos[azar() % todos.size()]->habilitar(false);
        }));
        todos.back()->rearmar(1 + azar() % 1000);
    }
    bucle.avanzar(2000);
    EXPECT_GT(veces, 2000);
}

} // namespace kv
