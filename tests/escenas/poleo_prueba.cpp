// SPDX-License-Identifier: Apache-2.0
// Whose turn it is, and what an answer does.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

Configuracion bloques(const std::vector<std::string>& scans) {
    Configuracion c;
    c.puerto().estacion(1, "10.0.0.1", 1);
    for (std::size_t i = 0; i < scans.size(); ++i)
        c.bloque(1, std::string(1, static_cast<char>('A' + i)), scans[i]);
    return c;
}

/// Addresses asked for, in order, as letters.
std::string pedidos(const Estaciones& plc, std::size_t desde = 0) {
    std::string letras;
    for (std::size_t i = desde; i < plc.pedidos.size(); ++i)
        letras += static_cast<char>('A' + plc.pedidos[i].trama[3] - 10);
    return letras;
}

} // namespace

TEST(Poleo, TresBloquesVencidosSalenEnOrdenUnoPorPausa) {
    auto config = bloques({"60", "60", "60"});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    plc.demora = [](const Solicitud&) { return 100.0; };
    p.arrancarYConectar();
    p.avanzar(5000);
    ASSERT_EQ(pedidos(plc), "ABC");
    for (int i = 0; i < 2; ++i) {
        const auto salto = plc.pedidos[i + 1U].ms - plc.pedidos[static_cast<std::size_t>(i)].ms;
        EXPECT_GE(salto, 900) << "the answer's 100 ms and the pause";
        EXPECT_LT(salto, 902);
    }
    EXPECT_EQ(p.conexion(0).cursorBloques, 2U);
}

TEST(Poleo, UnBloqueMasRapidoQueLaPausaNoDejaSinTurnoALosDemas) {
    auto config = bloques({"0.1", "2", "2"});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(60'000);
    const std::string orden = pedidos(plc);
    EXPECT_GT(std::count(orden.begin(), orden.end(), 'B'), 15);
    EXPECT_GT(std::count(orden.begin(), orden.end(), 'C'), 15);
    EXPECT_GT(std::count(orden.begin(), orden.end(), 'A'), 20);
}

TEST(Poleo, UnScanDe90SegundosVenceALos90) {
    auto config = bloques({"90"});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(400'000);
    ASSERT_GE(plc.pedidos.size(), 4U);
    for (std::size_t i = 1; i < 4; ++i)
        EXPECT_NEAR(plc.pedidos[i].ms - plc.pedidos[i - 1].ms, 90'000, 2);
}

TEST(Poleo, UnScanDeCeroLeeUnaVezPorConexion) {
    auto config = bloques({"0"});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(600'000);
    EXPECT_EQ(plc.pedidos.size(), 1U);
    plc.cortar();
    p.avanzar(60'000);
    EXPECT_EQ(plc.pedidos.size(), 2U);
}

TEST(Poleo, ConPausaCeroElSiguienteSaleEnseguida) {
    auto config = bloques({"60", "60"});
    Planta p(config);
    p.ajuste("Tiempo_Entre_poleo", "0");
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(1);
    ASSERT_EQ(pedidos(plc), "AB");
    EXPECT_LT(plc.pedidos[1].ms - plc.pedidos[0].ms, 0.5) << "the round trip and nothing else";
}

TEST(Poleo, LosInactivosNoSeLeenYUnaEstacionAjenaTampoco) {
    auto config = Configuracion()
                      .puerto()
                      .estacion(1, "10.0.0.1", 1)
                      .bloque(1, "A", "2", false)
                      .bloque(1, "B", "2")
                      .bloque(1, "40001", "2")
                      .bloque(9, "C", "2");
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(10'000);
    EXPECT_EQ(pedidos(plc).find_first_not_of('B'), std::string::npos);
    ASSERT_EQ(p.motor.tablas.bloques.limiteSuperior(), 3U)
        << "the block of no station is not built";
    EXPECT_FALSE(p.bloque(2).tieneTrama);
    EXPECT_EQ(p.fila(p.motor.vista.lstViewVariables, 2, 2), "BAD");
    EXPECT_NE(p.fila(p.motor.vista.lstViewEstadoDeBloques, 2, 4), "");
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_40001_STATUS"), 13);
}

TEST(Poleo, UnaRespuestaSePublicaSoloCuandoTraeAlgoNuevo) {
    auto config = bloques({"1"});
    Planta p(config);
    struct Cliente final : AvisoAlCliente {
        void notificarVariable(std::string_view direccion, double valor, double estado) override {
            avisos += std::string(direccion) + "=" + std::to_string(static_cast<int>(valor)) + "," +
                      std::to_string(static_cast<int>(estado)) + " ";
        }
        std::string avisos;
    } cliente;
    p.motor.publicacion.avisarA(&cliente);
    auto& plc = p.en("10.0.0.1");
    plc.registros[{1, 10}] = 0xFFFE;
    p.arrancarYConectar();
    p.avanzar(5000);
    EXPECT_EQ(cliente.avisos, "1.1.A=-2,6 ");
    plc.registros[{1, 10}] = 7;
    p.avanzar(2000);
    EXPECT_EQ(cliente.avisos, "1.1.A=-2,6 1.1.A=7,6 ");
    EXPECT_EQ(p.motor.scriptControl.valorDe("mw_1_1_a"), 7);
    EXPECT_EQ(p.fila(p.motor.vista.lstViewVariables, 0, 1), "7");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewVariables, 0, 2), "OK");
}

} // namespace kv
