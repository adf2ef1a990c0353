// Stations that do not answer: retries, BAD, a rest, and back.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

Configuracion con(const Configuracion::Puerto& puerto, const std::string& scan = "2") {
    return Configuracion().puerto(puerto).estacion(1, "10.0.0.1", 1).bloque(1, "10", scan);
}

/// Seconds between the requests, rounded.
std::string intervalos(const Estaciones& plc) {
    std::string s;
    for (std::size_t i = 1; i < plc.pedidos.size(); ++i)
        s += std::to_string(std::lround((plc.pedidos[i].ms - plc.pedidos[i - 1].ms) / 1000)) + " ";
    return s;
}

void callar(Estaciones& plc) {
    plc.demora = [](const Solicitud&) { return std::nullopt; };
}

void hablar(Estaciones& plc) {
    plc.demora = [](const Solicitud&) { return 0.0; };
}

} // namespace

TEST(TiemposFuera, CallaSePoneBadDescansaYVuelve) {
    auto config = con({});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(10);
    ASSERT_TRUE(p.ok(0));
    callar(plc);
    plc.pedidos.clear();
    p.avanzar(2000 + 19'900);
    EXPECT_EQ(intervalos(plc), "5 5 5 ") << "one request and three retries";
    EXPECT_TRUE(p.ok(0)) << "not before the last time-out";
    EXPECT_TRUE(p.tramasTiene(" REINTENTO 3 Bloque: 1.1.10 Envio -> [52][01][00][10]"));
    p.avanzar(200);
    EXPECT_FALSE(p.ok(0));
    EXPECT_EQ(p.valor(0), 116) << "the value stays";
    const auto& vista = p.motor.vista;
    EXPECT_EQ(p.fila(vista.lstViewVariables, 0, 2), "BAD - Por TimeOut - Deshabilitacion");
    EXPECT_EQ(p.fila(vista.lstViewEstadoDeBloques, 0, 3).find("Deshabilitado por 30(s) Desde "),
              0U);
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_10_STATUS"), 13);
    p.avanzar(29'500);
    EXPECT_EQ(plc.pedidos.size(), 4U) << "it rests";
    hablar(plc);
    p.avanzar(600);
    EXPECT_EQ(plc.pedidos.size(), 5U) << "asked at once when the rest is over";
    EXPECT_TRUE(p.ok(0)) << "republished although the value did not change";
    EXPECT_EQ(p.fila(vista.lstViewEstadoDeBloques, 0, 3).find("Habilitado desde "), 0U);
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_10_STATUS"), 6);
    p.avanzar(3000);
    EXPECT_EQ(plc.pedidos.size(), 6U) << "back to its own scan time";
}

TEST(TiemposFuera, SinReintentosElPrimeroDeshabilita) {
    auto config = con({"5", "0", "90"});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    callar(plc);
    p.arrancarYConectar();
    p.avanzar(300'000);
    EXPECT_EQ(intervalos(plc).substr(0, 6), "95 95 ") << "5 s of waiting, 60 and 30 s of rest";
}

TEST(TiemposFuera, DuraLoQueDiceElArchivo) {
    for (const auto& [timeOut, segundos] :
         {std::pair{"90", "90 90 "}, std::pair{"120", "120 120 "}}) {
        auto config = con({timeOut, "2", "30"});
        Planta p(config);
        auto& plc = p.en("10.0.0.1");
        callar(plc);
        p.arrancarYConectar();
        p.avanzar(500'000);
        EXPECT_EQ(intervalos(plc).substr(0, std::string(segundos).size()), segundos);
    }
}

TEST(TiemposFuera, UnaRespuestaTrasUnReintentoValeYLosReintentosVuelvenACero) {
    auto config = con({});
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    int veces = 0;
    plc.demora = [&](const Solicitud&) {
        return ++veces == 1 ? std::optional<double>() : std::optional<double>(50);
    };
    p.arrancarYConectar();
    p.avanzar(5100);
    EXPECT_TRUE(p.ok(0));
    EXPECT_EQ(p.bloque(0).reintentos, 0);
}

TEST(TiemposFuera, UnBloqueApagadoMientrasSeLoEsperaLiberaLaConexionSinReintento) {
    auto config = con({}).bloque(1, "11", "60");
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    callar(plc);
    p.arrancarYConectar();
    p.avanzar(10);
    p.motor.tablas.ponerActivo(0, false);
    hablar(plc);
    p.avanzar(25'000);
    EXPECT_EQ(plc.pedidos[1].trama[3], 0x11) << "the next request is another block's";
    EXPECT_TRUE(p.ok(1));
    EXPECT_FALSE(p.ok(0));
}

TEST(TiemposFuera, UnoSinRespuestaNoArrastraALosDemasDeLaConexion) {
    auto config = Configuracion()
                      .puerto()
                      .estacion(1, "10.0.0.1", 1)
                      .estacion(2, "10.0.0.1", 2)
                      .bloque(1, "10", "2")
                      .bloque(2, "10", "2");
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    plc.demora = [](const Solicitud& s) {
        return s[1] == 1 ? std::optional<double>() : std::optional<double>(20);
    };
    p.arrancarYConectar();
    p.avanzar(600'000);
    EXPECT_FALSE(p.ok(0));
    EXPECT_TRUE(p.ok(1));
    EXPECT_EQ(plc.conexiones, 1) << "a dead station costs the others no connection";
    const auto delOtro = std::count_if(plc.pedidos.begin(), plc.pedidos.end(),
                                       [](const auto& x) { return x.trama[1] == 2; });
    EXPECT_GT(delOtro, 80) << "and leaves them a fair share of the line";
}

} // namespace kv
