// SPDX-License-Identifier: Apache-2.0
// Late answers carry no name. No answer may be stored under another register's.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <random>

namespace kv {
namespace {

/// Runs a plant in which every register has a value of its own, and counts values in a wrong place.
class Atrasadas : public testing::Test {
  protected:
    Planta& plantaDe(Configuracion c) {
        planta = std::make_unique<Planta>(c);
        planta->bucle.alTerminarCadaSuceso([this] { vigilar(); });
        return *planta;
    }
    void vigilar() {
        Tablas& t = planta->motor.tablas;
        for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
            const BloqueLectura& b = t.bloques[i];
            const int propio = b.tramaSolicitud[1] * 100 + b.tramaSolicitud[3];
            if (b.estado == 6 && b.valor != propio) ++enOtroLugar;
        }
    }
    static Configuracion dosRegistros(const Configuracion::Puerto& puerto = {}) {
        return Configuracion()
            .puerto(puerto)
            .estacion(1, "10.0.0.1", 1)
            .estacion(2, "10.0.0.1", 2)
            .bloque(1, "10", "2")
            .bloque(1, "11", "3")
            .bloque(2, "12", "4");
    }
    std::unique_ptr<Planta> planta;
    int enOtroLugar = 0;
};

} // namespace

TEST_F(Atrasadas, UnaEstacionAlgoMasLentaQueSuTiempoFuera) {
    auto& p = plantaDe(dosRegistros());
    auto& plc = p.en("10.0.0.1");
    plc.demora = [](const Solicitud&) { return 5100.0; };
    p.arrancarYConectar();
    p.avanzar(600'000);
    EXPECT_EQ(enOtroLugar, 0);
    EXPECT_TRUE(p.ok(0) && p.ok(1) && p.ok(2)) << "a late answer of the same register counts";
    EXPECT_EQ(plc.conexiones, 1);
}

TEST_F(Atrasadas, UnaDosVecesYMediaMasLenta) {
    for (const char* reintentos : {"0", "1", "3"}) {
        auto& p = plantaDe(dosRegistros({"5", reintentos, "30"}));
        auto& plc = p.en("10.0.0.1");
        plc.demora = [](const Solicitud&) { return 12'500.0; };
        p.arrancarYConectar();
        p.avanzar(900'000);
        EXPECT_EQ(enOtroLugar, 0) << reintentos;
        EXPECT_GT(plc.pedidos.size(), 30U) << "it goes on asking";
    }
}

TEST_F(Atrasadas, UnaLentaQueAtiendeDeAUnaPorVez) {
    auto& p = plantaDe(dosRegistros());
    auto& plc = p.en("10.0.0.1");
    double libre = 0;
    plc.demora = [&](const Solicitud&) {
        libre = std::max(libre, p.ahoraMs()) + 7000;
        return libre - p.ahoraMs();
    };
    p.arrancarYConectar();
    p.avanzar(900'000);
    EXPECT_EQ(enOtroLugar, 0);
}

TEST_F(Atrasadas, UnCorteDeRedQueEntregaTodoJunto) {
    for (const double cortada : {6'000.0, 22'000.0, 47'000.0, 300'000.0}) {
        auto& p = plantaDe(dosRegistros());
        auto& plc = p.en("10.0.0.1");
        plc.demora = [](const Solicitud&) { return 50.0; };
        p.arrancarYConectar();
        p.avanzar(5000);
        ASSERT_TRUE(p.ok(0) && p.ok(1) && p.ok(2));
        p.bucle.red().interrumpir(plc.enlace());
        p.avanzar(cortada);
        p.bucle.red().reanudar(plc.enlace());
        p.avanzar(90'000);
        EXPECT_EQ(enOtroLugar, 0) << cortada;
        EXPECT_TRUE(p.ok(0) && p.ok(1) && p.ok(2)) << cortada;
        // Once all its tries would have been used up a dead cable is taken for one.
        EXPECT_EQ(plc.conexiones, cortada < 20'000 ? 1 : 2) << cortada;
    }
}

TEST_F(Atrasadas, UnCorteTrasElCualLaEstacionContestaUnaPorSegundo) {
    auto& p = plantaDe(dosRegistros());
    auto& plc = p.en("10.0.0.1");
    double libre = 0;
    plc.demora = [&](const Solicitud&) {
        libre = std::max(libre, p.ahoraMs()) + 1000;
        return libre - p.ahoraMs();
    };
    p.arrancarYConectar();
    p.avanzar(20'000);
    ASSERT_TRUE(p.ok(0) && p.ok(1) && p.ok(2));
    for (int vez = 0; vez < 10; ++vez) {
        p.bucle.red().interrumpir(plc.enlace());
        p.avanzar(21'300 + vez * 777);
        p.bucle.red().reanudar(plc.enlace());
        p.avanzar(120'000);
        EXPECT_EQ(enOtroLugar, 0) << vez;
        EXPECT_TRUE(p.ok(0) && p.ok(1) && p.ok(2)) << vez;
    }
}

TEST_F(Atrasadas, DemorasAlAzarConUnaEstacionMuertaEnLaMismaDireccion) {
    for (unsigned semilla = 1; semilla <= 20; ++semilla) {
        auto& p = plantaDe(dosRegistros());
        auto& plc = p.en("10.0.0.1");
        std::mt19937 azar(semilla);
        plc.demora = [&azar](const Solicitud& s) -> std::optional<double> {
            if (s[1] == 2 || azar() % 20 == 0) return std::nullopt;
            return static_cast<double>(azar() % 10 == 0 ? azar() % 13'000 : azar() % 300);
        };
        p.arrancarYConectar();
        p.avanzar(3'600'000);
        EXPECT_EQ(enOtroLugar, 0) << "seed " << semilla;
        EXPECT_EQ(plc.conexiones, 1) << "seed " << semilla;
    }
}

TEST_F(Atrasadas, UnaPruebaContestadaPorUnaAtrasadaYLaPropiaTarde) {
    // A's repetition and the trial of B reach the station together; A is answered at once, B after
    // more than its time-out.
    auto& p = plantaDe(dosRegistros({"1", "1", "600"}));
    auto& plc = p.en("10.0.0.1");
    int vez = 0;
    plc.demora = [&vez](const Solicitud& s) -> std::optional<double> {
        ++vez;
        if (vez <= 2) return vez == 1 ? std::optional<double>() : std::optional<double>(2100.0);
        return s[3] == 0x11 ? 1200.0 : 100.0;
    };
    p.arrancarYConectar();
    p.avanzar(120'000);
    EXPECT_EQ(enOtroLugar, 0);
}

TEST_F(Atrasadas, UnaRespuestaRetenidaPorLaRedMasDeTresTiemposFuera) {
    auto& p = plantaDe(dosRegistros({"1", "3", "30"}));
    auto& plc = p.en("10.0.0.1");
    int vez = 0;
    plc.demora = [&vez](const Solicitud&) {
        return ++vez == 1 ? 1100.0 : vez == 2 ? 9000.0 : 50.0;
    };
    p.arrancarYConectar();
    p.avanzar(120'000);
    EXPECT_EQ(enOtroLugar, 0);
    EXPECT_TRUE(p.ok(0) && p.ok(1) && p.ok(2));
}

TEST_F(Atrasadas, UnaQueEmpiezaATardarTrasMuchasQueNoContestaron) {
    auto& p = plantaDe(dosRegistros({"1", "3", "2"}));
    auto& plc = p.en("10.0.0.1");
    bool lenta = false;
    plc.demora = [&lenta](const Solicitud& s) -> std::optional<double> {
        if (s[1] == 2) return std::nullopt;
        return lenta ? 1500.0 : 20.0;
    };
    p.arrancarYConectar();
    p.avanzar(120'000);
    lenta = true;
    p.avanzar(300'000);
    EXPECT_EQ(enOtroLugar, 0);
}

TEST_F(Atrasadas, UnEnlaceQueSePierdeYVuelveEntreDosSupervisiones) {
    // The other address never answers, so that connections are asked for all the time.
    auto& p = plantaDe(dosRegistros().estacion(3, "10.0.0.2", 3));
    p.ajuste("Base_Tiempo_Solicitar_Conexiones_Milisegundos", "100");
    auto& plc = p.en("10.0.0.1");
    plc.demora = [](const Solicitud&) { return 1500.0; };
    p.arrancarYConectar();
    for (int vez = 0; vez < 40; ++vez) {
        plc.cortar();
        p.avanzar(5000 + vez * 130);
        p.motor.forzado.forzarPoleo("1.1.10", "prueba");
    }
    EXPECT_GT(plc.conexiones, 30);
    EXPECT_EQ(enOtroLugar, 0) << "the pass of the supervision forgets no request that is out";
}

TEST(Atrasada, UnaLineaQueNoCallaSeReabre) {
    auto config = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "2");
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    for (int s = 0; s < 120; ++s) { // answers that nobody asked for, every second
        plc.mandar(respuestaCon(77));
        p.avanzar(1000);
    }
    EXPECT_GT(plc.conexiones, 1);
    p.avanzar(60'000);
    EXPECT_TRUE(p.ok(0));
    EXPECT_EQ(p.valor(0), 116);
}

} // namespace kv
