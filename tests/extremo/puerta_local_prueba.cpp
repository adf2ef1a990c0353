// SPDX-License-Identifier: Apache-2.0
// The real programs: one asks the other by its socket file, while a client has its place.

#include "extremo/programas.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kv::extremo {
namespace {

struct Resultado {
    int codigo;
    std::string salida, errores;
};

Resultado cliente(std::vector<std::string> orden) {
    orden.insert(orden.begin(), kCliente);
    Proceso p(std::move(orden));
    std::string salida = p.resto();
    const int codigo = p.terminar();
    return {codigo, std::move(salida), p.errores()};
}

Resultado local(const Instalacion& en, std::vector<std::string> orden) {
    orden.insert(orden.begin(), {"--local", en.ruta(), "--espera", "60"});
    return cliente(std::move(orden));
}

bool tiene(const std::string& texto, std::string_view parte) {
    return texto.find(parte) != std::string::npos;
}

} // namespace

TEST(PuertaLocal, ElClienteDeEstaMaquinaPreguntaYEscribeSinOcuparElLugarDelOtro) {
    Simulador simulador({0}, {"--registro", "1.10=1234"}, false);
    Configuracion config;
    config.puerto()
        .estacion(1, "127.0.0.1", 1, simulador.puerto(0))
        .bloque(1, "10", "0.1")
        .bloque(1, "11", "0.1", false);
    Instalacion en(config.texto());
    en.agregarAjuste("Puerta_Local_Escriben=" + std::to_string(getuid()));
    Proceso driver({en.programa(), "--sin-ventana"});
    while (local(en, {"leer", "1.1.10"}).salida != "1.1.10 1234 OK\n") {
    }
    Proceso supervisor(en.cliente({"vigilar"}));
    ASSERT_TRUE(tiene(supervisor.linea(), "1.1.1")) << supervisor.errores();

    struct stat que {};
    ASSERT_EQ(lstat((en.ruta() + "/DriverKV2200.sock").c_str(), &que), 0);
    EXPECT_EQ(que.st_mode & 0777U, 0600U);
    const Resultado escrita = local(en, {"escribir", "1.1.10", "-7"});
    EXPECT_EQ(escrita.salida, "confirmada\n") << escrita.errores;
    EXPECT_EQ(escrita.codigo, 0);
    EXPECT_TRUE(tiene(local(en, {"porque", "1.1.11"}).salida, "apagado por la configuracion"));
    EXPECT_TRUE(tiene(local(en, {"estado"}).salida, "apagadas: 1\n"));
    EXPECT_TRUE(tiene(local(en, {"sucesos"}).salida, " EnlaceArriba 127.0.0.1:"));
    EXPECT_TRUE(tiene(local(en, {"--json", "contadores"}).salida, "\"respuestas\":"));
    EXPECT_TRUE(tiene(local(en, {"vigilar", "--durante", "0.5"}).salida, "1.1.10 -7 OK"));
    const Resultado mala = local(en, {"leer", "9.9.9"});
    EXPECT_EQ(mala.codigo, 1);
    EXPECT_TRUE(tiene(mala.errores, "no hay una variable")) << mala.errores;
    EXPECT_EQ(cliente({"estado"}).codigo, 2) << "there is no such order without --local";
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    const Resultado nadie = local(en, {"estado"});
    EXPECT_EQ(nadie.codigo, 1);
    EXPECT_TRUE(tiene(nadie.errores, "no corre un driver")) << nadie.errores;
}

} // namespace kv::extremo
