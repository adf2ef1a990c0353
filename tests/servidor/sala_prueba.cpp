// SPDX-License-Identifier: Apache-2.0
// Those who wait to be known by their password, and the one who is.

#include "apoyo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>

namespace kv {
namespace {

/// Strangers that connect and say nothing.
class Mudos {
  public:
    explicit Mudos(BucleSimulado& bucle) : bucle_(bucle) {}
    ClienteSimulado& llega(const std::string& ip = "10.0.0.66") {
        auto& nuevo =
            mudos_.emplace_back(bucle_, ip + ":" + std::to_string(50'000 + mudos_.size()));
        nuevo.conectar();
        return nuevo;
    }
    [[nodiscard]] std::size_t conectados() const {
        return static_cast<std::size_t>(std::count_if(
            mudos_.begin(), mudos_.end(), [](const ClienteSimulado& m) { return m.conectado; }));
    }

  private:
    BucleSimulado& bucle_;
    std::deque<ClienteSimulado> mudos_;
};

} // namespace

TEST(Sala, UnMudoQueVuelveSiempreNoDejaAfueraANadie) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Plazo_De_Login_Segundos", "20");
    p.arrancar();
    Mudos mudos(p.planta.bucle);
    for (int vez = 0; vez < 130; ++vez) {
        for (int i = 0; i < vez % 40; ++i)
            mudos.llega();
        p.cliente.conectar();
        ASSERT_TRUE(p.cliente.conectado) << vez;
        mudos.llega();
        p.cliente.enviar(p.cliente.clave());
        ASSERT_NE(p.cliente.tomar().find("PassOK"), std::string::npos) << vez;
        EXPECT_EQ(mudos.conectados(), 0U) << "the login decides who the client is";
        mudos.llega();
        p.planta.avanzar(2000);
        EXPECT_TRUE(p.cliente.conectado) << "a client is displaced by nobody";
        EXPECT_EQ(mudos.conectados(), 0U);
        p.cliente.cerrar();
        p.planta.avanzar(3000);
    }
}

TEST(Sala, CadaDireccionTieneSusLugaresYEntreTodasHayUnMaximo) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    Mudos mudos(p.planta.bucle);
    ClienteSimulado& primero = mudos.llega();
    for (std::size_t i = 1; i < Sala::kPorDireccion; ++i)
        mudos.llega();
    EXPECT_TRUE(primero.conectado);
    mudos.llega();
    EXPECT_FALSE(primero.conectado) << "the one that has waited longest makes room";
    EXPECT_EQ(mudos.conectados(), Sala::kPorDireccion);
    // One that waits at another address keeps its place however many come from the first.
    p.cliente.conectar();
    for (int i = 0; i < 50; ++i)
        mudos.llega();
    EXPECT_TRUE(p.cliente.conectado);
    EXPECT_EQ(mudos.conectados(), Sala::kPorDireccion);
    p.cliente.cerrar();
    Mudos otros(p.planta.bucle);
    for (int i = 0; i < 20; ++i)
        otros.llega("10.0.0.77");
    EXPECT_EQ(mudos.conectados(), Sala::kPorDireccion)
        << "its own make room, however old others are";
    for (int i = 1; i < 100; ++i)
        mudos.llega("10.1.0." + std::to_string(i));
    EXPECT_LE(mudos.conectados(), Sala::kLugares);
    EXPECT_LT(p.log().size(), 20'000U);
    p.otro.conectar();
    p.otro.enviar(p.otro.clave());
    EXPECT_NE(p.otro.tomar().find("PassOK"), std::string::npos);
}

TEST(Sala, SeOyeAlPrimeroYLoQueSeLeDebiaAlClienteSeLeDaIgual) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    Mudos mudos(p.planta.bucle);
    ClienteSimulado& primero = mudos.llega();
    p.cliente.conectar();
    p.planta.avanzar(1000);
    EXPECT_EQ(veces(primero.tomar(), "[SINK_FIN]"), 1U);
    EXPECT_EQ(p.cliente.tomar(), "") << "until it is known one more is told nothing";
    p.cliente.enviar("SINCRONIZAR[Write]1.1.10;5[/Write][KEEP_DESDE_SERVIDOR]");
    primero.enviar("SINCRONIZAR[Write]1.1.10;5[/Write][KEEP_DESDE_SERVIDOR]");
    EXPECT_EQ(p.cliente.tomar() + primero.tomar(), "");
    EXPECT_EQ(p.ordenes.tomar(), Textos{});
    p.cliente.enviar(p.cliente.clave());
    EXPECT_FALSE(primero.conectado);
    p.planta.avanzar(1001);
    const std::string dicho = p.cliente.tomar();
    EXPECT_TRUE(dicho.starts_with("PassOK")) << dicho;
    EXPECT_EQ(veces(dicho, "[SINK_FIN]"), 1U) << "a stranger's is not its own";
    p.planta.avanzar(5000);
    EXPECT_EQ(veces(p.cliente.tomar(), "[SINK_FIN]"), 0U);
    EXPECT_EQ(p.planta.motor.vista.servidor.lblEstado.texto(), "Conectado");
}

TEST(Sala, QuienCallaSeVaSoloYLaPuertaSeMiraTambienAlIdentificarse) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    Mudos mudos(p.planta.bucle);
    mudos.llega();
    p.planta.avanzar(10'000);
    mudos.llega();
    p.planta.avanzar(28'000);
    EXPECT_EQ(mudos.conectados(), 1U) << "each for its own silence";
    p.planta.avanzar(15'000);
    EXPECT_EQ(mudos.conectados(), 0U);
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
    p.cliente.conectar();
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.10");
    p.cliente.enviar(p.cliente.clave());
    EXPECT_FALSE(p.cliente.conectado);
    EXPECT_EQ(p.cliente.tomar().find("PassOK"), std::string::npos);
}

} // namespace kv
