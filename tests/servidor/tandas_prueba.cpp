// SPDX-License-Identifier: Apache-2.0
// A client that sends thousands of orders at once: they are done some at a time, all of them, in
// their order, whatever happens meanwhile.

#include "apoyo.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr int kMuchas = 2000;

std::string escrituras(int cuantas) {
    std::string s;
    for (int i = 0; i < cuantas; ++i)
        s += "[Write]a;" + std::to_string(i) + "[/Write]";
    return s;
}

Textos hechas(int cuantas) {
    Textos t;
    for (int i = 0; i < cuantas; ++i)
        t.push_back("escribir a " + std::to_string(i));
    return t;
}

} // namespace

TEST(Tandas, UnBloqueQueVenceNoEsperaElFinDeLaLlegada) {
    auto config = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "0.003");
    PlantaConServidor p(config);
    p.planta.ajuste("Tiempo_Entre_poleo", "2");
    auto& plc = p.planta.en("10.0.0.1");
    p.arrancarConCliente();
    p.planta.avanzar(12'000);
    std::vector<std::size_t> pedidos;
    p.ordenes.alHacer = [&] { pedidos.push_back(plc.pedidos.size()); };
    p.cliente.enviar("Read;1.1.10;FinRead;" + escrituras(kMuchas));
    (void)p.cliente.tomar();
    p.planta.avanzar(1000);
    ASSERT_EQ(p.ordenes.tomar(), hechas(kMuchas));
    EXPECT_GE(pedidos.back(), pedidos.front() + 2) << "the station was asked between two writes";
    const std::string dicho = p.cliente.tomar();
    EXPECT_EQ(veces(dicho, "[WRITE_OK]"), static_cast<std::size_t>(kMuchas));
    EXPECT_LT(dicho.rfind("[WRITE_OK]"), dicho.find("[DRI]#1.1.10;110;6;#[/DRI]"));
}

TEST(Tandas, LoQueMandoAntesDeIrseSeHaceComoQuieraQueSeVaya) {
    const auto irse = [](const std::function<void(PlantaConServidor&)>& como) {
        PlantaConServidor p(tresBloques());
        p.arrancarConCliente();
        Textos debido = hechas(kMuchas);
        debido.emplace_back("escribir b 1");
        p.cliente.enviar(escrituras(kMuchas));
        p.cliente.enviar("[Write]b;1[/Write]");
        EXPECT_LT(p.ordenes.hechas.size(), debido.size() / 2);
        como(p);
        EXPECT_EQ(p.ordenes.tomar(), debido);
        p.planta.avanzar(3000);
        p.otro.conectar();
        p.otro.enviar(p.otro.clave());
        EXPECT_EQ(veces(p.otro.tomar(), "PassOK"), 1U);
        p.otro.enviar("[Write]c;1[/Write]");
        EXPECT_EQ(p.ordenes.tomar(), Textos{"escribir c 1"});
        EXPECT_EQ(p.otro.tomar(), "[WRITE_OK]");
    };
    irse([](PlantaConServidor& p) {
        p.cliente.cerrar();
        p.planta.avanzar(1000);
    });
    irse([](PlantaConServidor& p) {
        p.planta.bucle.red().romper(p.cliente.enlace(), ECONNRESET);
        p.planta.avanzar(1000);
    });
}

TEST(Tandas, ElProgramaTerminaConLoQueLlegoHechoYContestado) {
    auto config = tresBloques();
    Planta p(config);
    p.arrancar();
    p.motor.servidor.Form_Load();
    ClienteSimulado cliente(p.bucle);
    cliente.conectar();
    cliente.enviar(cliente.clave());
    (void)cliente.tomar();
    cliente.enviar(escrituras(kMuchas));
    p.motor.terminar();
    std::size_t rechazadas = 0;
    for (auto n = p.motor.sucesos.primero(); n < p.motor.sucesos.siguiente(); ++n)
        rechazadas += p.motor.sucesos[n].que == Que::EscrituraRechazada ? 1U : 0U;
    EXPECT_EQ(rechazadas, static_cast<std::size_t>(kMuchas));
    p.avanzar(1);
    EXPECT_EQ(veces(cliente.tomar(), "[WRITE_OK]"), static_cast<std::size_t>(kMuchas));
}

TEST(Tandas, QuienSeDespidePorCalladoSeVaConLoSuyoHechoYContestado) {
    const auto hasta = [](int ms, const std::string& alFinal) {
        auto p = std::make_unique<PlantaConServidor>(tresBloques());
        p->planta.ajuste("Maximos_Keep_ALive", "1");
        p->arrancarConCliente();
        p->planta.avanzar(ms);
        if (!alFinal.empty()) p->cliente.enviar(alFinal);
        return p;
    };
    int seVa = 0;
    for (auto p = hasta(0, ""); p->cliente.conectado; ++seVa)
        p->planta.avanzar(1);
    const auto p = hasta(seVa - 4, escrituras(kMuchas));
    EXPECT_TRUE(p->cliente.conectado);
    p->planta.avanzar(5);
    EXPECT_FALSE(p->cliente.conectado);
    EXPECT_EQ(p->ordenes.tomar(), hechas(kMuchas));
    EXPECT_EQ(veces(p->cliente.tomar(), "[WRITE_OK]"), static_cast<std::size_t>(kMuchas));
}

TEST(Tandas, UnNumeroMaloEnUnaTandaPierdeElRestoDeEsaLlegadaYNoLaSiguiente) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.cliente.enviar(escrituras(kMuchas) + "[Write]b;x[/Write]" + "[Write]c;1[/Write]SINCRONIZAR");
    p.cliente.enviar("[Write]d;1[/Write]");
    p.planta.avanzar(1500);
    Textos debido = hechas(kMuchas);
    debido.emplace_back("rechazar b nan: el valor no es un numero");
    debido.emplace_back("escribir d 1");
    EXPECT_EQ(p.ordenes.tomar(), debido);
    EXPECT_NE(p.log().find(" Datos: [Write]c;1[/Write]SINCRONIZAR\r\n"), std::string::npos);
    EXPECT_EQ(p.cliente.tomar().find("[SINK_FIN]"), std::string::npos);
}

} // namespace kv
