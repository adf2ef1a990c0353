// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/linea_de_orden.h"
#include "SimuladorKV2200/planta.h"
#include "SimuladorKV2200/solicitudes.h"

#include <gtest/gtest.h>

namespace kv::simulador {
namespace {

Solicitud lectura(const char* direccion, const char* estacion) {
    return *armarTramaLectura(direccion, estacion);
}

std::span<const std::uint8_t> vista(const std::string& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

DefinicionDeRegistro registro(const char* texto) {
    std::string error;
    const auto d = registroDeTexto(texto, error);
    EXPECT_EQ(error, "") << texto;
    return d;
}

} // namespace

TEST(SimuladorPlanta, UnaTablaPorDireccionYEstacion) {
    Planta planta(1, {},
                  {registro("*.*=7"), registro("01.10=100"), registro("10.0.0.2:502/25.1f=-2"),
                   registro("10.0.0.2:0502/*.20=65535")},
                  {});
    const auto a = planta.agregarDireccion("10.0.0.1:502", {});
    const auto b = planta.agregarDireccion("10.0.0.2:502", {0x25, 0x01});
    const auto valor = [&](std::size_t d, const Solicitud& s) {
        const auto r = planta.atender(d, s, 0);
        if (!r) return std::string("nadie");
        EXPECT_TRUE(verificarTramaRespuesta(r->respuesta));
        return std::to_string(valorDeRespuesta(r->respuesta));
    };
    EXPECT_EQ(valor(a, lectura("10", "1")), "100");
    EXPECT_EQ(valor(a, lectura("1F", "25")), "7");
    EXPECT_EQ(valor(b, lectura("1F", "25")), "-2");
    EXPECT_EQ(valor(b, lectura("20", "1")), "-1");
    EXPECT_EQ(valor(b, lectura("10", "2")), "nadie");
    EXPECT_EQ(valor(a, *armarTramaEscritura("10", "1", 1000)), "1000");
    EXPECT_EQ(valor(a, lectura("10", "1")), "1000");
    EXPECT_EQ(valor(b, lectura("10", "1")), "100");
}

TEST(SimuladorPlanta, SenalesEnElTiempo) {
    const auto valor = [](const char* forma, std::int64_t ms, std::uint64_t semilla = 1) {
        return valorDe(*senalDeTexto(forma), ms, semilla);
    };
    EXPECT_EQ(valor("rampa", 0), 0);
    EXPECT_EQ(valor("rampa", 5'000), 50);
    EXPECT_EQ(valor("rampa", 100'000), 1000);
    EXPECT_EQ(valor("rampa", 100'100), 0);
    EXPECT_EQ(valor("seno", 15'000), 1000);
    EXPECT_EQ(valor("seno", 45'000), -1000);
    EXPECT_EQ(valor("azar", 1'000), valor("azar", 1'999));
    std::set<int> valores;
    for (int s = 0; s < 100; ++s) {
        const int v = valor("azar", s * 1000);
        EXPECT_TRUE(v >= 0 && v <= 1000);
        EXPECT_EQ(v, valor("azar", s * 1000));
        valores.insert(v);
    }
    EXPECT_GT(valores.size(), 80U);
    EXPECT_NE(valor("azar", 0, 1), valor("azar", 0, 2));
    // Far beyond any run, and a written value ends the shape.
    EXPECT_GE(valor("rampa", 1'000'000'000'000), 0);
    for (const char* mala : {"", "1.5", "65536", "-32769", "ramp"})
        EXPECT_FALSE(senalDeTexto(mala)) << mala;
    Planta planta(1, {}, {registro("01.10=rampa")}, {});
    planta.agregarDireccion("d", {});
    static_cast<void>(planta.atender(0, *armarTramaEscritura("10", "1", 5), 0));
    EXPECT_EQ(valorDeRespuesta(planta.atender(0, lectura("10", "1"), 9'000)->respuesta), 5);
}

TEST(SimuladorPlanta, SolicitudesPartidasJuntasYConBasura) {
    const auto texto = [](const Solicitud& s) { return std::string(s.begin(), s.end()); };
    const std::string uno = texto(lectura("1F", "1"));
    const std::string dos = texto(lectura("52", "52")); // full of bytes that begin a request
    std::string mala = uno;
    mala.back() = static_cast<char>(mala.back() + 1);
    const std::string todo = "basura" + uno + dos + mala + "RW" + dos + "R" + uno + "x";
    // Whatever way the bytes are split, the same requests come out, and no byte is lost.
    for (std::size_t paso = 1; paso <= todo.size(); ++paso) {
        Solicitudes s;
        std::string validas;
        std::string ignorados;
        for (std::size_t i = 0; i < todo.size(); i += paso) {
            const std::string parte = todo.substr(i, paso);
            s.agregar(vista(parte));
            while (const auto suceso = s.siguiente()) {
                if (suceso->solicitud) validas += texto(*suceso->solicitud);
                ignorados += suceso->ignorados;
            }
        }
        EXPECT_EQ(validas, uno + dos + dos + uno) << paso;
        EXPECT_EQ(ignorados, "basura" + mala + "RW" + "R" + "x") << paso;
    }
}

} // namespace kv::simulador
