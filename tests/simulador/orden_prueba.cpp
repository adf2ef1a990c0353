// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/linea_de_orden.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kv::simulador {
namespace {

struct Lectura {
    Orden orden;
    std::optional<int> fin;
    std::string salida;
    std::string errores;
};

Lectura leer(std::vector<const char*> argumentos) {
    argumentos.insert(argumentos.begin(), "SimuladorKV2200");
    Lectura l;
    std::ostringstream salida;
    std::ostringstream errores;
    l.fin =
        leerOrden(static_cast<int>(argumentos.size()), argumentos.data(), l.orden, salida, errores);
    l.salida = salida.str();
    l.errores = errores.str();
    return l;
}

} // namespace

TEST(SimuladorOrden, TodasLasOpciones) {
    const auto l = leer({"--escuchar",
                         "127.0.0.1:5021",
                         "127.0.0.1:0",
                         "--registro",
                         "25.1F=-5",
                         "*.*=seno",
                         "--registro",
                         "10.0.0.1:502/*.A=rampa",
                         "--retardo-ms",
                         "10-20",
                         "--sin-respuesta",
                         "0.5",
                         "--basura",
                         "1",
                         "--fragmentar",
                         "--cortar-cada",
                         "1.5",
                         "--cortar-de-golpe",
                         "--perder-respuesta-de-escritura",
                         "0.25",
                         "--semilla",
                         "99",
                         "--traza",
                         "--estacion",
                         "127.0.0.1:5021/02,retardo-ms=7,fragmentar=0,ausente=1/3"});
    ASSERT_FALSE(l.fin) << l.errores;
    const Orden& o = l.orden;
    ASSERT_EQ(o.escuchar.size(), 2U);
    EXPECT_EQ(o.escuchar[1].puerto, 0);
    ASSERT_EQ(o.registros.size(), 3U);
    EXPECT_EQ(o.registros[0].lugar.estacion, 0x25); // the digits of the byte on the wire
    EXPECT_EQ(o.registros[0].registro, 0x1F);
    EXPECT_EQ(o.registros[0].senal.valor, -5);
    EXPECT_FALSE(o.registros[1].lugar.estacion || o.registros[1].registro);
    EXPECT_EQ(o.registros[2].lugar.direccion, "10.0.0.1:502");
    EXPECT_EQ(std::tuple(o.fallas.retardoMinMs, o.fallas.retardoMaxMs, o.fallas.sinRespuesta,
                         o.fallas.basura, o.fallas.fragmentar, o.fallas.cortarCadaS,
                         o.fallas.cortarDeGolpe, o.fallas.perderRespuestaDeEscritura),
              std::tuple(10, 20, 0.5, 1, true, 1.5, true, 0.25));
    EXPECT_EQ(o.semilla, 99U);
    EXPECT_TRUE(o.traza);
    // The options of a place stand over the general ones.
    Planta planta(o.semilla, o.fallas, o.registros, o.porLugar);
    planta.agregarDireccion("127.0.0.1:5021", {});
    const auto dos = planta.atender(0, *armarTramaLectura("1F", "2"), 0);
    EXPECT_EQ(std::tuple(dos->fallas.retardoMaxMs, dos->fallas.fragmentar, dos->fallas.basura,
                         dos->fallas.ausenteCadaS),
              std::tuple(7, false, 1, 3));
    const auto tres = planta.atender(0, *armarTramaLectura("1F", "3"), 0);
    EXPECT_EQ(tres->fallas.retardoMaxMs, 20);
}

TEST(SimuladorOrden, LasOrdenesMalasTerminanCon2YDicenPorQue) {
    for (const auto& mala : std::vector<std::vector<const char*>>{
             {},
             {"--nada"},
             {"--escuchar"},
             {"--escuchar", "5021"},
             {"--escuchar", "localhost:5021"},
             {"--escuchar", "127.0.0.1:65536"},
             {"--config", "a.ini", "--escuchar", "127.0.0.1:0"},
             {"--escuchar", "127.0.0.1:0", "--retardo-ms", "20-10"},
             {"--escuchar", "127.0.0.1:0", "--retardo-ms", "-1"},
             {"--escuchar", "127.0.0.1:0", "--sin-respuesta", "1.1"},
             {"--escuchar", "127.0.0.1:0", "--basura", "nan"},
             {"--escuchar", "127.0.0.1:0", "--cortar-cada", "x"},
             {"--escuchar", "127.0.0.1:0", "--semilla", "-1"},
             {"--escuchar", "127.0.0.1:0", "--registro", "A1.10=5"},
             {"--escuchar", "127.0.0.1:0", "--registro", "01.100=5"},
             {"--escuchar", "127.0.0.1:0", "--registro", "01.10=x"},
             {"--escuchar", "127.0.0.1:0", "--registro", "01.10"},
             {"--escuchar", "127.0.0.1:0", "--estacion", "02"},
             {"--escuchar", "127.0.0.1:0", "--estacion", "02,nada=1"},
             {"--escuchar", "127.0.0.1:0", "--estacion", "02,cortar-cada=5"},
             {"--escuchar", "127.0.0.1:0", "--estacion", "02,cortar-de-golpe=1"},
             {"--escuchar", "127.0.0.1:0", "--estacion", "127.0.0.1,basura=1"}}) {
        const auto l = leer(mala);
        const std::string cual = mala.empty() ? "(nada)" : mala.back();
        EXPECT_EQ(l.fin, 2) << cual;
        EXPECT_TRUE(l.errores.starts_with("SimuladorKV2200: ")) << l.errores;
        EXPECT_GT(l.errores.find('\n'), 30U) << l.errores;
    }
    const auto ayuda = leer({"--help"});
    EXPECT_EQ(ayuda.fin, 0);
    EXPECT_NE(ayuda.salida.find("Opciones:"), std::string::npos);
}

TEST(SimuladorOrden, DireccionesDeUnaConfiguracion) {
    std::ostringstream errores;
    const auto todas = escuchadasDeConfig(
        std::string(KV_FUENTES) + "/examples/planta-chica/DRIVER_KV2200_Config.ini", errores);
    EXPECT_EQ(errores.str(), "");
    ASSERT_EQ(todas.size(), 4U);
    EXPECT_EQ(todas[0].puerto, 5021);
    EXPECT_EQ(todas[0].estaciones, (std::set<std::uint8_t>{0x01, 0x02}));
    EXPECT_EQ(todas[3].estaciones, (std::set<std::uint8_t>{0x25}));
    EXPECT_TRUE(escuchadasDeConfig("/no/existe.ini", errores).empty());
    EXPECT_NE(errores.str(), "");
}

} // namespace kv::simulador
