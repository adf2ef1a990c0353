// SPDX-License-Identifier: Apache-2.0
// The client's program beside a server on real sockets; its parser on a stream cut anywhere.

#include "ClienteKV2200/linea_de_orden.h"
#include "ClienteKV2200/salida.h"
#include "apoyo.h"
#include "platform/epoll/bucle_epoll.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <regex>
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
        motor_.modelo.levantarPuerto({1, 5, 2, 3, 30});
        Estacion estacion;
        estacion.numero = estacion.indice = estacion.puerto = 1;
        estacion.ip = "127.0.0.1", estacion.puertoTCP = "9";
        motor_.modelo.levantarEstacion(estacion);
        motor_.modelo.levantarBloquePoleo(1, 1, "10", 1, 2, true, 1);
        motor_.modelo.levantarBloquePoleo(1, 1, "40", 12, 2, true, 1);
        motor_.ajustes.escribirConfiguracion("PuertoEscucha", std::to_string(kPuerto));
    }
    /// Runs the program beside the server, which begins to listen when `abre` says so; `alTic` is
    /// called every ten milliseconds with what the program has printed so far.
    using Tic = std::function<void(const std::string& salida)>;
    Corrida correr(
        std::vector<std::string> argumentos, const Tic& alTic = [](const auto&) {}) {
        argumentos.insert(argumentos.begin(), {std::string(KV_BIN) + "/ClienteKV2200", "--servidor",
                                               servidor + ":" + std::to_string(kPuerto)});
        FrmServerTCP frm(bucle_, motor_.tablas, motor_.ajustes, motor_.vista, motor_.sucesos,
                         motor_.log, ordenes_);
        motor_.publicacion.avisarA(&frm);
        int tubo[2] = {-1, -1};
        EXPECT_EQ(pipe2(tubo, O_NONBLOCK), 0);
        hijo_ = lanzar(argumentos, tubo[1]);
        close(tubo[1]);
        Corrida c;
        int estado = 0;
        int tics = 0;
        bool abierto = false;
        const auto mirar = bucle_.crearTemporizador([&] {
            leerTodo(tubo[0], c.salida);
            if (!abierto && abre(c.salida)) {
                frm.Form_Load();
                abierto = true;
            }
            alTic(c.salida);
            if (waitpid(hijo_, &estado, WNOHANG) == hijo_) return bucle_.detener();
            if (++tics == 3000) kill(hijo_, SIGKILL);
        });
        mirar->rearmar(10);
        bucle_.correr();
        motor_.publicacion.avisarA(nullptr);
        c.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
        leerTodo(tubo[0], c.salida);
        close(tubo[0]);
        return c;
    }
    [[nodiscard]] pid_t lanzar(std::vector<std::string>& argumentos, int salida) const {
        const pid_t hijo = fork();
        if (hijo != 0) return hijo;
        fcntl(salida, F_SETFL, 0);
        dup2(salidaLlena ? open("/dev/full", O_WRONLY) : salida, STDOUT_FILENO);
        dup2(salida, STDERR_FILENO);
        setenv("TZ", zona.c_str(), 1);
        std::vector<char*> argv;
        for (std::string& a : argumentos)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    static void leerTodo(int tubo, std::string& destino) {
        char trozo[4096];
        for (ssize_t n = 0; (n = read(tubo, trozo, sizeof trozo)) > 0;)
            destino.append(trozo, static_cast<std::size_t>(n));
    }
    /// Once, when the plant has been ordered to do `orden`.
    Tic alHacerse(const std::string& orden, const std::function<void()>& hacer) {
        return [this, orden, hacer, hecho = false](const std::string&) mutable {
            if (hecho || ordenes_.hechas.empty() || ordenes_.hechas.front() != orden) return;
            hecho = true;
            hacer();
        };
    }

    std::string servidor = "127.0.0.1";
    std::string zona = getenv("TZ") != nullptr ? getenv("TZ") : ":/etc/localtime";
    bool salidaLlena = false;
    std::function<bool(const std::string&)> abre = [](const std::string&) { return true; };
    pid_t hijo_ = -1;
    /// Tests of this kind run beside each other.
    const int kPuerto = 21000 + getpid() % 20000;
    BucleEpoll bucle_;
    ArchivosSimulados archivos_;
    Motor motor_;
    OrdenesDePrueba ordenes_;
};

} // namespace

TEST_F(Cliente, LeeTambienLoQueElDriverTieneQuePreguntar) {
    motor_.publicacion.valorLeido(0, 1234);
    const auto llega = alHacerse("polear 1.1.1f", [this] {
        motor_.modelo.levantarBloquePoleo(1, 1, "1F", 1, 2, true, 1);
        motor_.publicacion.valorLeido(13, 77);
    });
    const Corrida c = correr({"leer", "1.1.10", "1.1.1f", "1.1.40"}, llega);
    EXPECT_EQ(c.codigo, 0);
    EXPECT_EQ(c.salida, "1.1.10 1234 OK\n1.1.1f 77 OK\n1.1.40 0 BAD\n");
    EXPECT_EQ(correr({"leer", "1.1.1f"}).salida, "1.1.1f 77 OK\n") << "known as 1.1.1F";
}

TEST_F(Cliente, LoQueNadieConoceSeEsperaYSeDiceYNoEstorbaALosDemas) {
    const Corrida c = correr({"--espera", "1", "leer", "9.9.9", "1.1.40", "9.9.8"});
    EXPECT_EQ(c.codigo, 1);
    const std::string fin = ": sin respuesta, el driver no conoce esa dirección\n";
    EXPECT_EQ(c.salida, "ClienteKV2200: 9.9.9" + fin + "1.1.40 0 BAD\nClienteKV2200: 9.9.8" + fin);
    EXPECT_EQ(ordenes_.tomar(), (Textos{"polear 9.9.9", "polear 9.9.8"}));
}

TEST_F(Cliente, EscribirTerminaCuandoSeLeeLoEscrito) {
    struct Caso {
        const char *direccion, *valor, *orden;
        double leido;
        const char* salida;
    };
    for (const Caso& k :
         {Caso{"1.1.10", "-7,5", "escribir 1.1.10 -7.5", -8, "1.1.10 -8 OK\n"},
          {"1.1.10", "12.5", "escribir 1.1.10 12.5", 12, "1.1.10 12 OK\n"},
          {"1.1.10", "40000", "escribir 1.1.10 40000", -25536, "1.1.10 -25536 OK\n"},
          {"1.1.10.3", "1", "escribir 1.1.10.3 1", 9, "1.1.10.3 1 OK\n"}}) {
        const Corrida c =
            correr({"escribir", k.direccion, k.valor},
                   alHacerse(k.orden, [&] { motor_.publicacion.valorLeido(0, k.leido); }));
        EXPECT_EQ(c.codigo, 0);
        EXPECT_EQ(c.salida, k.salida);
        EXPECT_EQ(ordenes_.tomar(), Textos{k.orden});
    }
}

TEST_F(Cliente, LoQueNoSeLeeComoSeEscribioQuedaSinConfirmar) {
    const Corrida bad = correr({"--espera", "1", "escribir", "1.1.10", "0"});
    EXPECT_EQ(bad.codigo, 1) << "BAD confirms nothing";
    EXPECT_EQ(bad.salida, "ClienteKV2200: 1.1.10: sin confirmar, se lee 0 BAD\n");
    (void)ordenes_.tomar();
    const Corrida otro =
        correr({"--json", "--espera", "1", "escribir", "1.1.10", "5"},
               alHacerse("escribir 1.1.10 5", [this] { motor_.publicacion.valorLeido(0, 6); }));
    EXPECT_EQ(otro.codigo, 1);
    EXPECT_NE(otro.salida.find("\"error\":\"sin confirmar, se lee 6 OK\",\"direccion\":\"1.1.10\","
                               "\"valor\":6,\"estado\":\"OK\"}\n"),
              std::string::npos)
        << otro.salida;
    const Corrida nadie = correr({"--espera", "1", "escribir", "9.9.9", "5"});
    EXPECT_EQ(nadie.salida, "ClienteKV2200: 9.9.9: sin confirmar, no se pudo leer\n");
    (void)ordenes_.tomar();
    EXPECT_EQ(correr({"forzar", "1", "3"}).codigo, 0);
    EXPECT_EQ(ordenes_.tomar(), Textos{"forzar 1 3"});
}

TEST_F(Cliente, SincronizaYVigila) {
    const Corrida c = correr({"sincronizar"});
    EXPECT_EQ(c.codigo, 0) << c.salida;
    EXPECT_TRUE(c.salida.starts_with("1.1.10 0 BAD\n")) << c.salida;
    for (const char* registro : {"1.1.40", "1.1.49", "1.1.4A", "1.1.4B"}) // one record each
        EXPECT_EQ(veces(c.salida, std::string(registro) + " 0 BAD\n"), 1U) << registro;
    double valor = 0;
    const std::regex linea("\\{\"hora\":\"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}"
                           "[+-]\\d\\d:\\d\\d\",\"direccion\":\"1.1.10\",\"valor\":\\d+,"
                           "\"estado\":\"(OK|BAD)\"\\}");
    const Corrida v = correr({"--json", "vigilar", "--durante", "2"}, [&](const std::string&) {
        motor_.publicacion.valorLeido(0, ++valor);
    });
    EXPECT_EQ(v.codigo, 0) << v.salida;
    EXPECT_EQ(veces(v.salida, "\"1.1.4"), 12U) << v.salida;
    EXPECT_GT(veces(v.salida, "\"estado\":\"OK\"}"), 20U);
    EXPECT_TRUE(std::regex_search(v.salida, linea)) << v.salida;
}

TEST_F(Cliente, VigilarEsperaAlDriverYDiceQueNoEsta) {
    servidor = "localhost"; // a name, of which the driver has one address
    motor_.publicacion.valorLeido(0, 5);
    abre = [](const std::string& salida) {
        return salida.find("se sigue intentando") != std::string::npos;
    };
    const Corrida c = correr({"--espera", "0.5", "vigilar"}, [this](const std::string& salida) {
        if (salida.find("1.1.10 5 OK\n") != std::string::npos) kill(hijo_, SIGTERM);
    });
    EXPECT_EQ(c.codigo, 0) << c.salida;
    EXPECT_TRUE(c.salida.starts_with("ClienteKV2200: no se pudo conectar con localhost:"))
        << c.salida;
    EXPECT_EQ(veces(c.salida, "se sigue intentando"), 1U) << c.salida;
}

TEST_F(Cliente, UnaClaveRechazadaNombraLaHoraYLaZona) {
    zona = "QQQ-05:45";
    const Corrida c = correr({"--espera", "1", "sincronizar"});
    EXPECT_EQ(c.codigo, 1);
    EXPECT_NE(c.salida.find("no aceptó la clave, o lo que ahí escucha no es un driver"),
              std::string::npos)
        << c.salida;
    EXPECT_NE(c.salida.find("zona UTC+05:45 (QQQ)\n"), std::string::npos) << c.salida;
}

TEST_F(Cliente, UnaSalidaQueNoSePuedeEscribirTerminaCon1) {
    salidaLlena = true;
    for (const Textos& orden :
         {Textos{"leer", "1.1.10"}, Textos{"sincronizar"}, Textos{"vigilar"}, Textos{"--help"}}) {
        const Corrida c = correr(orden);
        EXPECT_EQ(c.codigo, 1) << orden[0];
        EXPECT_NE(c.salida.find("en la salida"), std::string::npos) << c.salida;
    }
}

TEST_F(Cliente, SinDriverLoDice) {
    abre = [](const std::string&) { return false; };
    for (const char* nombre : {"127.0.0.1", "[::1]", "no.existe.invalid"}) {
        servidor = nombre;
        const Corrida c = correr({"--json", "--espera", "0.5", "sincronizar"});
        EXPECT_EQ(c.codigo, 1);
        EXPECT_NE(c.salida.find("\"error\":\"no se pudo conectar con " + servidor + ":"),
                  std::string::npos)
            << c.salida;
    }
    EXPECT_EQ(correr({"escribir", "1.1.10"}).codigo, 2);
}

TEST(ClienteOrden, LineasMalasTerminanCon2) {
    for (const Textos& mala :
         {Textos{}, Textos{"bailar"}, Textos{"leer"}, Textos{"leer", "a;b"},
          Textos{"escribir", "a", "x"}, Textos{"forzar", "1", "x"}, Textos{"forzar", "1", "-2"},
          Textos{"forzar", "1", "0.5"}, Textos{"--espera", "0", "leer"},
          Textos{"--servidor", "casa", "sincronizar"},
          Textos{"--servidor", "::1:1334", "sincronizar"},
          Textos{"--servidor", "[casa]:1334", "sincronizar"},
          Textos{"--servidor", "casa:0", "sincronizar"}, Textos{"vigilar", "--durante", "-1"}}) {
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
