// SPDX-License-Identifier: Apache-2.0
// The real programs: one asks the other by its socket file, while a client has its place.

#include "apoyo/configuracion.h"
#include "extremo/programas.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

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
    EXPECT_TRUE(tiene(local(en, {"sucesos", "--desde", "0"}).salida, " EnlaceArriba 127.0.0.1:"));
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

/// What a link lacks, made to happen by the kernel, given by the door and in the log.
TEST(PuertaLocal, CadaEnlaceQueFaltaDicePorQue) {
    const int escucha = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generica = reinterpret_cast<sockaddr*>(&a); // NOLINT
    socklen_t largo = sizeof a;
    ASSERT_EQ(bind(escucha, generica, sizeof a), 0);
    ASSERT_EQ(listen(escucha, 4), 0);
    ASSERT_EQ(getsockname(escucha, generica, &largo), 0);
    // One that takes every link and resets it.
    std::thread quienCorta([escucha] {
        for (int d = 0; (d = accept(escucha, nullptr, nullptr)) >= 0; close(d)) {
            const linger nada{1, 0};
            setsockopt(d, SOL_SOCKET, SO_LINGER, &nada, sizeof nada);
        }
    });
    Configuracion config;
    config.puerto()
        .estacion(1, "127.0.0.1", 1, std::to_string(puertoLibre()))
        .estacion(2, "127.0.0.1", 2, std::to_string(ntohs(a.sin_port)))
        .estacion(3, "224.0.0.1", 3)
        .estacion(4, "no-hay.invalid", 4);
    for (int plc = 1; plc <= 4; ++plc)
        config.bloque(plc, "10", "1");
    Instalacion en(config.texto());
    Proceso driver({en.programa(), "--sin-ventana"});
    const auto dice = [&en](int plc, std::string_view que) {
        const std::string variable = "1." + std::to_string(plc) + ".10";
        while (!tiene(local(en, {"porque", variable}).salida, que)) {
        }
        const std::string texto = local(en, {"porque", variable}).salida;
        EXPECT_TRUE(tiene(texto, "nunca leida: la conexion ")) << texto;
    };
    dice(1, " no se establecio nunca: rechaza la conexion (nadie atiende ese puerto); ");
    dice(2, " de golpe; ");
    dice(3, " no se establecio nunca: no hay ruta hasta esa red; ");
    dice(4, " no se establecio nunca: nadie conoce el nombre no-hay.invalid; ");
    const auto log = [&en] {
        std::string todo;
        for (const auto& e : std::filesystem::directory_iterator(en.ruta() + "/LOGS_DRIVER"))
            todo += en.leer("LOGS_DRIVER/" + e.path().filename().string());
        return todo;
    };
    for (const std::string_view que : {": no se puede conectar, rechaza la conexion (nadie",
                                       "224.0.0.1:502: no se puede conectar, no hay ruta hasta"}) {
        while (!tiene(log(), que))
            local(en, {"estado"});
    }
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    shutdown(escucha, SHUT_RDWR);
    quienCorta.join();
    close(escucha);
}

} // namespace kv::extremo
