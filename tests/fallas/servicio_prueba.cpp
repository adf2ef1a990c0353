// SPDX-License-Identifier: Apache-2.0
// A driver under a service manager: what it tells it, and what becomes of one whose loop stands
// still.

#include "apoyo.h"

#include "apoyo/configuracion.h"
#include "extremo/programas.h"

#include <sys/un.h>
#include <sys/wait.h>

namespace kv::fallas {
namespace {

using extremo::recibido;

constexpr int kPlazoMs = 2000; // the longest that the manager goes without a sign of life

/// The manager's ear, and the environment of a driver that is to speak to it.
class Gerente {
  public:
    explicit Gerente(const std::string& carpeta) : ruta_(carpeta + "/aviso") {
        sockaddr_un a{};
        a.sun_family = AF_UNIX;
        ruta_.copy(a.sun_path, sizeof a.sun_path - 1);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        EXPECT_EQ(bind(descriptor_, generica, sizeof a), 0) << ruta_;
    }
    ~Gerente() { close(descriptor_); }
    Gerente(const Gerente&) = delete;
    Gerente& operator=(const Gerente&) = delete;

    [[nodiscard]] std::vector<std::string> orden(const std::vector<std::string>& driver) const {
        std::vector<std::string> toda{"/usr/bin/env", "NOTIFY_SOCKET=" + ruta_,
                                      "WATCHDOG_USEC=" + std::to_string(kPlazoMs * 1000)};
        toda.insert(toda.end(), driver.begin(), driver.end());
        return toda;
    }
    /// The next word, empty when no word comes in time.
    [[nodiscard]] std::string aviso(int plazoMs) const {
        pollfd p{descriptor_, POLLIN, 0};
        if (poll(&p, 1, plazoMs) <= 0) return {};
        std::array<char, 256> memoria{};
        const ssize_t n = recv(descriptor_, memoria.data(), memoria.size(), 0);
        return {memoria.data(), static_cast<std::size_t>(std::max<ssize_t>(n, 0))};
    }
    /// The next word that is not a sign of life, or empty when those stop.
    [[nodiscard]] std::string novedad() const {
        std::string a;
        while ((a = aviso(kPlazoMs)) == "WATCHDOG=1") {
        }
        return a;
    }
    /// Ends a driver that gives no sign of life: so that it may leave a trace of where it was, and
    /// for certain when that does not end it.
    static int acabarCon(Proceso& driver) {
        kill(driver.pid(), SIGABRT);
        siginfo_t como{};
        for (int i = 0; i < 100 && como.si_pid == 0; ++i) {
            waitid(P_PID, static_cast<id_t>(driver.pid()), &como, WEXITED | WNOHANG | WNOWAIT);
            poll(nullptr, 0, como.si_pid == 0 ? 10 : 0);
        }
        return driver.terminar(SIGKILL);
    }

  private:
    std::string ruta_;
    int descriptor_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

std::string unBloque(const extremo::Simulador& s) {
    return Configuracion()
        .puerto()
        .estacion(1, "127.0.0.1", 1, s.puerto(0))
        .bloque(1, "10", "0.1")
        .texto();
}

void detener(pid_t pid) {
    kill(pid, SIGSTOP);
    siginfo_t como{};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(pid), &como, WSTOPPED), 0);
}

} // namespace

TEST(Servicio, DiceCuandoSirveQueViveYQueTermina) {
    const extremo::Instalacion casa(Configuracion().puerto().texto());
    const Gerente gerente(casa.ruta());
    Proceso driver(gerente.orden(casa.correr()));
    ASSERT_EQ(gerente.aviso(static_cast<int>(Proceso::kPlazo.count()) * 1000), "READY=1");
    EXPECT_TRUE(visitar(casa.escucha(), "[KEEP_DESDE_SERVIDOR]", "[KEEP_DESDE_SERVIDOR]"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(gerente.aviso(kPlazoMs), "WATCHDOG=1");
    detener(driver.pid());
    while (!gerente.aviso(0).empty()) { // of before
    }
    EXPECT_EQ(gerente.aviso(kPlazoMs), "") << "it stands still";
    kill(driver.pid(), SIGCONT);
    EXPECT_EQ(gerente.aviso(kPlazoMs), "WATCHDOG=1");
    kill(driver.pid(), SIGTERM);
    EXPECT_EQ(gerente.novedad(), "STOPPING=1");
    EXPECT_EQ(driver.terminar(), 0);
}

TEST(Servicio, UnoDetenidoSeReemplazaYSeSiguePoleando) {
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const extremo::Instalacion casa(unBloque(s));
    const Gerente gerente(casa.ruta());
    auto driver = std::make_unique<Proceso>(gerente.orden(casa.correr()));
    EXPECT_EQ(recibido(*driver, "1", "10"), 261);
    EXPECT_EQ(gerente.aviso(kPlazoMs), "READY=1");
    detener(driver->pid());
    EXPECT_EQ(gerente.novedad(), "");
    EXPECT_EQ(Gerente::acabarCon(*driver), -1);
    driver = std::make_unique<Proceso>(gerente.orden(casa.correr()));
    EXPECT_EQ(gerente.novedad(), "READY=1");
    EXPECT_EQ(recibido(*driver, "1", "10"), 261);
    EXPECT_EQ(driver->terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST(Servicio, UnGuionSinFinSeNotaYSeCura) {
    extremo::Simulador s({0}, {"--registro", "01.10=261"});
    const extremo::Instalacion casa(unBloque(s));
    casa.agregarAjuste("Guion_Tiempo_Maximo_Milisegundos=600000");
    casa.escribir("DRIVER_KV2200_Config.MDrivScrip", "Do : Loop\r\n");
    const Gerente gerente(casa.ruta());
    auto driver = std::make_unique<Proceso>(gerente.orden(casa.correr()));
    EXPECT_EQ(gerente.novedad(), "READY=1");
    EXPECT_EQ(gerente.novedad(), "")
        << "from its first answer on it runs, and its loop does not turn";
    EXPECT_EQ(waitpid(driver->pid(), nullptr, WNOHANG), 0);
    EXPECT_EQ(Gerente::acabarCon(*driver), -1);
    casa.escribir("DRIVER_KV2200_Config.MDrivScrip", "x = 1\r\n");
    driver = std::make_unique<Proceso>(gerente.orden(casa.correr()));
    EXPECT_EQ(gerente.novedad(), "READY=1");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(recibido(*driver, "1", "10"), 261);
    EXPECT_EQ(driver->terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

} // namespace kv::fallas
