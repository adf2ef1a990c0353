// SPDX-License-Identifier: Apache-2.0
// Bytes become frames, whatever way they come.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <random>

namespace kv {
namespace {

class Recibe : public testing::Test {
  protected:
    Recibe() : plc(p.en("10.0.0.1")) {
        plc.demora = [](const Solicitud&) { return std::nullopt; };
        p.archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", "x=1\r\nerror aqui\r\n");
        p.arrancarYConectar();
        p.avanzar(10); // the request of block 0 is out
    }
    void llega(std::vector<std::uint8_t> bytes) {
        plc.mandar(bytes);
        p.avanzar(1);
    }
    static std::vector<std::uint8_t> bytes(const Respuesta& r) { return {r.begin(), r.end()}; }
    [[nodiscard]] bool corrioElGuion() {
        const bool corrio = p.motor.scriptControl.valorDe("x") == 1;
        p.motor.scriptControl.AddCode("x=0");
        return corrio;
    }

    Configuracion config = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "2");
    Planta p{config};
    Estaciones& plc;
};

} // namespace

TEST_F(Recibe, EnPartes) {
    const auto r = bytes(respuestaCon(261));
    llega({r.begin(), r.begin() + 3});
    EXPECT_TRUE(p.tramasTiene("  Obteniendo bytes <- [7][1][0]¦ Cantidad: 3\r\n"));
    EXPECT_FALSE(corrioElGuion());
    llega({r.begin() + 3, r.end()});
    EXPECT_TRUE(p.tramasTiene("[1][5][7]¦ Cantidad: 7\r\n"));
    EXPECT_EQ(p.valor(0), 261);
    EXPECT_TRUE(p.ok(0));
    EXPECT_TRUE(corrioElGuion());
    EXPECT_EQ(p.conexion(0).turno, EstadoDeTurno::EnPausa);
}

TEST_F(Recibe, DiezBytesSonUnaTramaYDosQueSobran) {
    auto r = bytes(respuestaCon(9));
    r.push_back(0xAA);
    r.push_back(0x0B);
    llega(r);
    EXPECT_EQ(p.valor(0), 9);
    EXPECT_TRUE(p.tramasTiene("[AA][B]¦ Cantidad: 7"));
    EXPECT_TRUE(p.conexion(0).recepcion.empty());
}

TEST_F(Recibe, UnaTramaMalaSeDescartaElGuionCorreYSeSigueEsperando) {
    auto r = bytes(respuestaCon(9));
    r.back() ^= 1;
    llega(r);
    EXPECT_FALSE(p.ok(0));
    EXPECT_TRUE(corrioElGuion());
    EXPECT_TRUE(p.tramasTiene("  *Descarte CheSum* <- [7][1]"));
    EXPECT_NE(p.motor.trazas.txtTramasDescartadas.texto().find("  *Descarte* <- [7][1]"),
              std::string::npos);
    EXPECT_EQ(p.conexion(0).turno, EstadoDeTurno::Esperando);
    EXPECT_EQ(p.motor.contadores.deConexion(0).descartes, 1U);
    llega(bytes(respuestaCon(10)));
    EXPECT_EQ(p.valor(0), 10) << "the real answer still counts";
}

TEST_F(Recibe, UnByteDeMasNoCorreTodoUnLugar) {
    auto r = bytes(respuestaCon(300));
    r.insert(r.begin(), {0x00, 0x55, 0x07});
    llega(r);
    EXPECT_EQ(p.valor(0), 300) << "resynchronised at the marker, in the same arrival";
}

TEST_F(Recibe, LoQueNadieEsperaNoSeGuarda) {
    llega(bytes(respuestaCon(5)));
    llega(bytes(respuestaCon(6))); // during the pause
    EXPECT_EQ(p.valor(0), 5);
    EXPECT_EQ(p.motor.contadores.deConexion(0).sobrantes, 1U);
    EXPECT_TRUE(corrioElGuion());
    EXPECT_TRUE(p.conexion(0).recepcion.empty());
}

TEST_F(Recibe, DosRespuestasAUnPedidoNoSeSabeCualEs) {
    auto r = bytes(respuestaCon(5));
    const auto otra = bytes(respuestaCon(6));
    r.insert(r.end(), otra.begin(), otra.end());
    llega(r);
    EXPECT_FALSE(p.ok(0));
    plc.demora = [](const Solicitud&) { return 0.0; };
    p.avanzar(17'000); // three time-outs of silence and a pause
    EXPECT_TRUE(p.ok(0)) << "asked again when the line had been quiet";
    EXPECT_EQ(p.valor(0), 116);
}

TEST_F(Recibe, MediaTramaDeUnEnlaceNoEmpiezaLaDelSiguiente) {
    const auto r = bytes(respuestaCon(261));
    llega({r.begin(), r.begin() + 5});
    plc.cortar();
    p.avanzar(30'000);
    ASSERT_EQ(plc.conexiones, 2);
    EXPECT_TRUE(p.conexion(0).recepcion.empty());
}

TEST_F(Recibe, BasuraSinFinNoTrabaNiCuesta) {
    std::mt19937 azar(3);
    for (int i = 0; i < 300; ++i) {
        std::vector<std::uint8_t> basura(1 + azar() % 3000);
        for (auto& b : basura)
            b = static_cast<std::uint8_t>(azar() % 4 == 0 ? 7 : azar());
        llega(basura);
        p.avanzar(static_cast<double>(azar() % 1000));
        const auto& c = p.conexion(0);
        EXPECT_LT(c.recepcion.size(), 8U);
    }
    plc.demora = [](const Solicitud&) { return 10.0; };
    p.avanzar(120'000);
    EXPECT_TRUE(p.ok(0));
    EXPECT_EQ(p.valor(0), 116);
}

} // namespace kv
