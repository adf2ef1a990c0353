// SPDX-License-Identifier: Apache-2.0
// A driver whose sockets fail as a kernel may let them fail, and one that runs out of descriptors.

#include "apoyo.h"

#include "apoyo/configuracion.h"
#include "extremo/programas.h"

#include <sys/resource.h>

namespace kv::fallas {
namespace {

using extremo::recibido;

std::string unBloque(const extremo::Simulador& s) {
    return Configuracion()
        .puerto({"1", "3", "1"})
        .estacion(1, "127.0.0.1", 1, s.puerto(0))
        .bloque(1, "10", "0.05")
        .texto();
}

/// A command line under a limit, as the shell's `ulimit` takes it.
std::vector<std::string> conLimite(const std::string& limite, std::vector<std::string> orden) {
    orden.insert(orden.begin(), {"/bin/sh", "-c", "ulimit " + limite + "; exec \"$0\" \"$@\""});
    return orden;
}

/// A port of every address of this machine's own that answers nobody: its queue is full.
class Sorda {
  public:
    Sorda() {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        socklen_t largo = sizeof a;
        auto* generica = reinterpret_cast<sockaddr*>(&a); // NOLINT
        EXPECT_EQ(bind(escucha_, generica, sizeof a), 0);
        EXPECT_EQ(listen(escucha_, 0), 0);
        EXPECT_EQ(getsockname(escucha_, generica, &largo), 0);
        puerto = std::to_string(ntohs(a.sin_port));
    }
    ~Sorda() { close(escucha_); }
    Sorda(const Sorda&) = delete;
    Sorda& operator=(const Sorda&) = delete;
    std::string puerto;

  private:
    int escucha_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

/// Descriptors that a process may have; what it has already stays open.
void limitar(pid_t pid, rlim_t descriptores) {
    rlimit antes{};
    ASSERT_EQ(prlimit(pid, RLIMIT_NOFILE, nullptr, &antes), 0);
    const rlimit ahora{descriptores, antes.rlim_max};
    ASSERT_EQ(prlimit(pid, RLIMIT_NOFILE, &ahora, nullptr), 0);
}

} // namespace

TEST(Red, LlamadasInterrumpidasYCortas) {
    const std::string comunes = "recv:EINTR:1:0:3,recv:EAGAIN:1:0:3,send:EINTR:1:0:4,"
                                "send:EAGAIN:1:0:3,send:corto:1:0:2,connect:EINTR:1:3:1,"
                                "accept:EINTR:1:3:1,accept:EAGAIN:1:3:1,epoll_wait:EINTR:1:0:2";
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const extremo::Instalacion casa(unBloque(s));
    Proceso driver(conFallas(casa.correr(), comunes));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_TRUE(visitar(casa.escucha(), "[Write]1.1.10;-5[/Write]", "1.1.10;-5;6;"));
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    // Byte by byte; a client's orders are told apart by their arrivals and could not come so.
    Proceso otro(conFallas(casa.correr(), comunes + ",recv:corto:1:0:1"));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(recibido(otro, "1", "10"), -5);
    EXPECT_EQ(otro.terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
    EXPECT_EQ(s.resto().find(" #3 conectado"), std::string::npos) << "no link was lost by it";
}

TEST(Red, SinZocalosPorUnRato) {
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const extremo::Instalacion casa(unBloque(s));
    // The first descriptors watched are those of the loop itself.
    Proceso driver(conFallas(casa.correr(), "socket:EMFILE:2:6:1,epoll_add:ENOMEM:3:6:1,"
                                            "recv:ENOBUFS:4:4:1,send:ECONNRESET:9:9:1"));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST(Red, SinDescriptoresNadieGiraEnVacio) {
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const extremo::Instalacion casa(unBloque(s));
    Proceso driver(conFallas(casa.correr(), "accept:EMFILE:1:3:1", casa.ruta() + "/cuenta"));
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos"), "");
    // The client waits until the driver can take it; the stations are polled meanwhile.
    EXPECT_TRUE(visitar(casa.escucha(), "read;1.1.10;FINREAD;", "1.1.10;"));
    EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);

    // For good: it is asked for now and then, not at every look at the kernel.
    extremo::Simulador otra({0}, {"--registro", "01.10=261"});
    casa.escribir("DRIVER_KV2200_Config.ini", unBloque(otra));
    Proceso sordo(conFallas(casa.correr(), "accept:EMFILE:1:0:1", casa.ruta() + "/cuenta"));
    EXPECT_NE(sordo.lineaCon("lblCantidadDePuntos"), "");
    const Enlace cliente(casa.escucha());
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(recibido(sordo, "1", "10"), 261);
    EXPECT_EQ(sordo.terminar(SIGTERM), 0);
    EXPECT_EQ(otra.terminar(SIGTERM), 0);
    const std::string cuenta = casa.leer("cuenta");
    const long pedidos = std::stol(cuenta.substr(cuenta.find(' ')));
    EXPECT_GT(pedidos, 0);
    EXPECT_LT(pedidos, 500) << "one a second, not as fast as it can";
}

TEST(Red, MuchasEstacionesQueNoContestanDejanDescriptoresParaLoDemas) {
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const Sorda sorda; // behind as many addresses as wanted
    auto configuracion =
        Configuracion().puerto({"1", "3", "1"}).estacion(1, "127.0.0.1", 1, s.puerto(0));
    for (int i = 2; i <= 250; ++i)
        configuracion.estacion(i, "127.1.0." + std::to_string(i), 1, sorda.puerto);
    const extremo::Instalacion casa(configuracion.bloque(1, "10", "0.05").texto());
    Proceso driver(conLimite("-n 160", casa.correr()));
    while (driver.errores().find("no alcanzan los descriptores") == std::string::npos)
        EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_TRUE(visitar(casa.escucha(), "read;1.1.10;FINREAD;", "1.1.10;261;6;"));
    EXPECT_EQ(driver.terminar(SIGTERM), 0) << driver.errores();
    std::string todos;
    for (const auto& [nombre, texto] : registrosDe(casa))
        todos += texto;
    EXPECT_NE(todos.find("Descriptores>no alcanzan los descriptores"), std::string::npos) << todos;
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST(Red, SeDaLosDescriptoresQuePuedeYConSIGHUPLeeDeNuevo) {
    extremo::Simulador s({0}, {"--registro", "01.10=261", "--registro", "01.11=262"});
    const extremo::Instalacion casa(unBloque(s));
    Proceso driver(conLimite("-S -n 100", casa.correr()));
    EXPECT_EQ(recibido(driver, "1", "10"), 261);
    rlimit limite{};
    ASSERT_EQ(prlimit(driver.pid(), RLIMIT_NOFILE, nullptr, &limite), 0);
    EXPECT_GT(limite.rlim_cur, 100U);
    EXPECT_EQ(limite.rlim_cur, limite.rlim_max);
    EXPECT_EQ(kill(driver.pid(), SIGHUP), 0); // nothing has changed
    EXPECT_EQ(recibido(driver, "1", "10"), 261);
    casa.escribir("DRIVER_KV2200_Config.ini", Configuracion()
                                                  .puerto({"1", "3", "1"})
                                                  .estacion(1, "127.0.0.1", 1, s.puerto(0))
                                                  .bloque(1, "10", "0.05")
                                                  .bloque(1, "11", "0.05")
                                                  .texto());
    EXPECT_EQ(kill(driver.pid(), SIGHUP), 0);
    EXPECT_EQ(recibido(driver, "1", "11"), 262);
    EXPECT_EQ(driver.terminar(SIGTERM), 0) << driver.errores();
    EXPECT_EQ(s.terminar(SIGTERM), 0);
    EXPECT_EQ(s.resto().find(" #2 conectado"), std::string::npos) << "the link stayed";
}

TEST(Red, SinDescriptoresDeVerasYDeNuevoConEllos) {
#ifdef KV_CON_SANITIZADORES
    GTEST_SKIP() << "the check of virtual calls opens a pipe to see whether an address can be read";
#endif
    auto s = std::make_unique<extremo::Simulador>(
        std::vector{0}, std::vector<std::string>{"--registro", "01.10=111"});
    const int puerto = std::stoi(s->puerto(0));
    const extremo::Instalacion casa(unBloque(*s));
    const std::string ajustes = casa.leer("sis_config.ini") + "Maximos_Keep_ALive=7\r\n";
    casa.escribir("sis_config.ini", ajustes);
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "1", "10"), 111);
    limitar(driver.pid(), 3);
    s.reset();
    extremo::Simulador otro({puerto}, {"--registro", "01.10=222"});
    poll(nullptr, 0, 2000); // for some attempts, of which nothing tells
    limitar(driver.pid(), 1024);
    int valor = 0;
    while ((valor = recibido(driver, "1", "10")) == 111) { // answers of before, still in the pipe
    }
    EXPECT_EQ(valor, 222);
    EXPECT_TRUE(visitar(casa.escucha(), "read;1.1.10;FINREAD;", "1.1.10;222;6;"));
    EXPECT_EQ(driver.terminar(SIGTERM), 0) << driver.errores();
    EXPECT_EQ(otro.terminar(SIGTERM), 0);
    EXPECT_TRUE(casa.leer("sis_config.ini").starts_with(ajustes))
        << "a file that could not be read for a while kept what it said";
}

} // namespace kv::fallas
