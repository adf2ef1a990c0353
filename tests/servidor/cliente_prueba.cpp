// The client's program beside a server on real sockets; its parser on a stream cut anywhere.

#include "ClienteKV2200/orden.h"
#include "ClienteKV2200/salida.h"
#include "apoyo.h"
#include "platform/epoll/bucle_epoll.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace kv::cliente {
namespace {

struct Corrida {
    int codigo = -1;
    std::string salida; ///< standard output, then standard error
};

/// A driver of two blocks without a plant, and the client's program run against it.
class Cliente : public ::testing::Test {
  protected:
    Cliente() : motor_(bucle_, archivos_, "/kv") {
        motor_.modelo.levantarPuerto(1, 5, 2, 3, 30, 0, false);
        motor_.modelo.levantarEstacion(1, "127.0.0.1", "9", 1, 5, 1);
        motor_.modelo.levantarBloquePoleo(1, 1, "10", 1, 2, true, 1);
        motor_.modelo.levantarBloquePoleo(1, 1, "40", 12, 2, true, 1);
        motor_.ajustes.escribirConfiguracion("PuertoEscucha", std::to_string(kPuerto));
    }
    Corrida correr(std::vector<std::string> argumentos, const std::function<void()>& alTic = {}) {
        FrmServerTCP servidor(bucle_, motor_.tablas, motor_.ajustes, motor_.vista, motor_.log,
                              ordenes_);
        servidor.Form_Load();
        motor_.publicacion.avisarA(&servidor);
        argumentos.insert(argumentos.begin(), {std::string(KV_BIN) + "/ClienteKV2200", "--servidor",
                                               "127.0.0.1:" + std::to_string(kPuerto)});
        int tubo[2] = {-1, -1};
        EXPECT_EQ(pipe(tubo), 0);
        const pid_t hijo = fork();
        if (hijo == 0) {
            dup2(tubo[1], STDOUT_FILENO);
            dup2(tubo[1], STDERR_FILENO);
            std::vector<char*> argv;
            for (std::string& a : argumentos)
                argv.push_back(a.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        close(tubo[1]);
        Corrida c;
        int estado = 0;
        int tics = 0;
        const auto mirar = bucle_.crearTemporizador([&] {
            if (alTic) alTic();
            if (waitpid(hijo, &estado, WNOHANG) == hijo) return bucle_.detener();
            if (++tics == 3000) kill(hijo, SIGKILL);
        });
        mirar->rearmar(10);
        bucle_.correr();
        motor_.publicacion.avisarA(nullptr);
        c.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
        char trozo[4096];
        for (ssize_t n = 0; (n = read(tubo[0], trozo, sizeof trozo)) > 0;)
            c.salida.append(trozo, static_cast<std::size_t>(n));
        close(tubo[0]);
        return c;
    }

    /// Tests of this kind run beside each other.
    const int kPuerto = 21000 + getpid() % 20000;
    BucleEpoll bucle_;
    ArchivosSimulados archivos_;
    Motor motor_;
    OrdenesDePrueba ordenes_;
};

} // namespace

TEST_F(Cliente, LeeYDiceQueNoSeConoce) {
    motor_.publicacion.valorLeido(0, 1234);
    const Corrida c = correr({"leer", "1.1.10", "9.9.9", "1.1.40"});
    EXPECT_EQ(c.codigo, 1);
    EXPECT_NE(c.salida.find("1.1.10 1234 OK\n"), std::string::npos) << c.salida;
    EXPECT_NE(c.salida.find("1.1.40 0 BAD\n"), std::string::npos) << c.salida;
    EXPECT_NE(c.salida.find("9.9.9: sin respuesta"), std::string::npos) << c.salida;
    EXPECT_EQ(ordenes_.tomar(), Textos{"polear 9.9.9"});
    const Corrida json = correr({"--json", "leer", "1.1.10"});
    EXPECT_EQ(json.codigo, 0);
    EXPECT_EQ(json.salida, "{\"direccion\":\"1.1.10\",\"valor\":1234,\"estado\":\"OK\"}\n");
}

TEST_F(Cliente, EscribeYFuerza) {
    EXPECT_EQ(correr({"escribir", "1.1.10", "-7.5"}).codigo, 0);
    EXPECT_EQ(ordenes_.tomar(), Textos{"escribir 1.1.10 -7.5"});
    EXPECT_EQ(correr({"forzar", "1", "3"}).codigo, 0);
    EXPECT_EQ(ordenes_.tomar(), Textos{"forzar 1 3"});
}

TEST_F(Cliente, SincronizaYVigila) {
    const Corrida c = correr({"sincronizar"});
    EXPECT_EQ(c.codigo, 0) << c.salida;
    EXPECT_TRUE(c.salida.starts_with("1.1.10 0 BAD\n")) << c.salida;
    EXPECT_EQ(veces(c.salida, "1.1.40 0 BAD\n"), 12U);
    double valor = 0;
    const Corrida v = correr({"--json", "vigilar", "--durante", "2"},
                             [&] { motor_.publicacion.valorLeido(0, ++valor); });
    EXPECT_EQ(v.codigo, 0) << v.salida;
    EXPECT_EQ(veces(v.salida, "\"1.1.40\""), 12U) << v.salida;
    EXPECT_GT(veces(v.salida, "\"estado\":\"OK\"}"), 20U);
}

TEST_F(Cliente, SinDriverLoDice) {
    motor_.ajustes.escribirConfiguracion("PuertoEscucha", std::to_string(kPuerto + 1));
    const Corrida c = correr({"--espera", "0.5", "sincronizar"});
    EXPECT_EQ(c.codigo, 1);
    EXPECT_NE(c.salida.find("no se pudo conectar"), std::string::npos) << c.salida;
    EXPECT_EQ(correr({"escribir", "1.1.10"}).codigo, 2);
}

TEST(ClienteOrden, LineasMalasTerminanCon2) {
    for (const Textos& mala :
         {Textos{}, Textos{"bailar"}, Textos{"leer"}, Textos{"leer", "a;b"},
          Textos{"escribir", "a", "x"}, Textos{"forzar", "1", "x"}, Textos{"--espera", "0", "leer"},
          Textos{"--servidor", "casa", "sincronizar"}, Textos{"vigilar", "--durante", "-1"}}) {
        std::vector<const char*> argv{"ClienteKV2200"};
        for (const auto& a : mala)
            argv.push_back(a.c_str());
        Orden orden;
        std::ostringstream salida, errores;
        EXPECT_EQ(leerOrden(static_cast<int>(argv.size()), argv.data(), orden, salida, errores), 2);
        EXPECT_FALSE(errores.str().empty());
    }
}

TEST(ClienteLector, UnFlujoCortadoEnCualquierParte) {
    const std::string flujo =
        "PassOK[DRI]#1.1.10;1;6;1.1.10;2;13;#[/DRI]basura[[DRI]#1.1.11;-1.5;6;"
        "#[/DRI][SINK_FIN][KEEP_DESDE_DRI][KEEP_DESDE_SERVIDOR][WRITE_OK]";
    for (std::size_t corte = 0; corte <= flujo.size(); ++corte) {
        Lector lector({});
        auto mensajes = lector.agregar(flujo.substr(0, corte));
        for (auto& m : lector.agregar(flujo.substr(corte)))
            mensajes.push_back(std::move(m));
        ASSERT_EQ(mensajes.size(), 7U) << corte;
        EXPECT_EQ(lineaDe(mensajes[1].variables.at(1), false), "1.1.10 2 BAD");
        EXPECT_EQ(lineaDe(mensajes[2].variables.at(0), true),
                  "{\"direccion\":\"1.1.11\",\"valor\":-1.5,\"estado\":\"OK\"}");
    }
    Tabla tabla;
    EXPECT_EQ(tabla.agregar({{"a", "1", "6"}, {"a", "2", "6"}}, "h").size(), 2U);
    EXPECT_EQ(tabla.agregar({{"a", "1", "6"}}, "h").size(), 0U);
    EXPECT_EQ(tabla.agregar({{"a", "3", "6"}}, "h"), std::vector<std::size_t>{0});
}

} // namespace kv::cliente
