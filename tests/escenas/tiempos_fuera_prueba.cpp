// SPDX-License-Identifier: Apache-2.0
// Stations that do not answer: retries, BAD, a rest, and back.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <set>

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
    p.motor.publicacion.ponerActivo(0, false);
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

namespace {

/// Six registers on a station, and a neighbour on the same address.
class Muda : public testing::Test {
  protected:
    Muda() {
        plc.demora = [this](const Solicitud& t) {
            const bool calla = t[1] == 1 && (muda || malos.contains(t[3]));
            return calla ? std::optional<double>() : std::optional<double>(10);
        };
        p.ajuste("Tiempo_Entre_poleo", "100");
        p.arrancarYConectar();
        p.avanzar(20'000);
    }
    [[nodiscard]] long buenos() {
        long n = 0;
        for (std::size_t b = 0; b < 6; ++b)
            n += p.ok(b) ? 1 : 0;
        return n;
    }
    [[nodiscard]] std::string estado(std::size_t b) {
        return p.fila(p.motor.vista.lstViewVariables, p.bloque(b).filaVariable, 2);
    }
    Configuracion config = Configuracion()
                               .puerto({"1", "2", "20"})
                               .estacion(1, "10.0.0.1", 1)
                               .estacion(2, "10.0.0.1", 2)
                               .bloque(1, "10", "600", true, 6)
                               .bloque(2, "30", "1");
    std::set<int> malos;
    bool muda = false;
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
};

} // namespace

TEST_F(Muda, CaeEnteraSeSondeaUnaVezPorDescansoYVuelveEntera) {
    ASSERT_EQ(buenos(), 6);
    muda = true;
    p.motor.forzado.forzarPoleo("1.1.10", "prueba");
    p.motor.forzado.forzarPoleo("1.1.11", "prueba");
    p.avanzar(12'000); // two blocks, three tries each, and one that was still good
    EXPECT_EQ(buenos(), 0) << "ten minutes of scan time do not matter";
    EXPECT_EQ(estado(5), "BAD - Estacion sin respuesta");
    EXPECT_TRUE(p.motor.tablas.conexiones[0].estaciones[0].muda);
    EXPECT_TRUE(p.ok(6)) << "the neighbour is well";
    plc.pedidos.clear();
    p.avanzar(110'000);
    std::set<int> quienes;
    int sondeos = 0;
    for (const auto& x : plc.pedidos) {
        if (x.trama[1] != 1) continue;
        ++sondeos;
        quienes.insert(x.trama[3]);
    }
    EXPECT_TRUE(sondeos == 5 || sondeos == 6) << sondeos << " rests, one request each";
    EXPECT_EQ(quienes.size(), static_cast<std::size_t>(sondeos)) << "each block in its turn";
    p.motor.forzado.Activar_Desactivar_Bloque_Por_Solicitud(3, false, "una prueba");
    p.motor.forzado.Activar_Desactivar_Bloque_Por_Solicitud(3, true, "una prueba");
    muda = false;
    p.avanzar(23'000);
    EXPECT_EQ(buenos(), 6) << "one answer brings all of them back, and due";
    EXPECT_FALSE(p.motor.tablas.conexiones[0].estaciones[0].muda);
}

TEST_F(Muda, DosRegistrosMalosNoCondenanANadieYSePreguntanSinReintentos) {
    malos = {0x10, 0x11};
    for (const char* d : {"1.1.10", "1.1.11"})
        p.motor.forzado.forzarPoleo(d, "prueba");
    p.avanzar(60'000);
    EXPECT_EQ(buenos(), 4);
    EXPECT_EQ(estado(0), "BAD - Por TimeOut - Deshabilitacion");
    plc.pedidos.clear();
    p.avanzar(66'000);
    const auto aMalos = std::count_if(plc.pedidos.begin(), plc.pedidos.end(), [](const auto& x) {
        return x.trama[1] == 1 && x.trama[3] < 0x12;
    });
    EXPECT_GE(aMalos, 4);
    EXPECT_LE(aMalos, 8) << "once a rest each";
    EXPECT_EQ(buenos(), 4);
    malos.clear();
    p.avanzar(25'000);
    EXPECT_EQ(buenos(), 6);
}

TEST_F(Muda, ConElAjusteEnCeroCaeCadaBloquePorSuCuenta) {
    p.ajuste("Estacion_Muda_Bloques", "0");
    p.motor.aplicarAjustes();
    muda = true;
    p.motor.forzado.forzarPoleo("1.1.10", "prueba");
    p.motor.forzado.forzarPoleo("1.1.11", "prueba");
    p.avanzar(40'000);
    EXPECT_EQ(buenos(), 4);
}

} // namespace kv
