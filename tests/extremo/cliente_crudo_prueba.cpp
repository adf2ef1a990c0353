// SPDX-License-Identifier: Apache-2.0
// The client's protocol byte by byte on a real socket, as a client of another maker speaks it.

#include "programas.h"

#include "apoyo/configuracion.h"
#include "platform/epoll/bucle_epoll.h"
#include "server/cifrado.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>

namespace kv::extremo {
namespace {

/// A socket and what came out of it.
class ClienteCrudo {
  public:
    /// Tries until the driver listens.
    explicit ClienteCrudo(int puerto) {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(static_cast<std::uint16_t>(puerto));
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        for (int intentos = 0; intentos < 3000; ++intentos) {
            descriptor_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (connect(descriptor_, generica, sizeof a) == 0) break;
            close(std::exchange(descriptor_, -1));
            poll(nullptr, 0, 20);
        }
        const int si = 1;
        setsockopt(descriptor_, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
    }
    ~ClienteCrudo() { close(descriptor_); }
    ClienteCrudo(const ClienteCrudo&) = delete;
    ClienteCrudo& operator=(const ClienteCrudo&) = delete;

    void enviar(const std::string& bytes) const {
        EXPECT_EQ(send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    /// Everything up to and with `fin`; what came meanwhile otherwise, if the deadline passes.
    std::string hasta(const std::string& fin) {
        std::size_t lugar = 0;
        while ((lugar = recibido_.find(fin)) == std::string::npos) {
            pollfd p{descriptor_, POLLIN, 0};
            std::array<char, 4096> memoria{};
            if (poll(&p, 1, static_cast<int>(Proceso::kPlazo.count()) * 1000) <= 0) break;
            const ssize_t n = recv(descriptor_, memoria.data(), memoria.size(), 0);
            if (n <= 0) break;
            recibido_.append(memoria.data(), static_cast<std::size_t>(n));
        }
        const std::size_t largo =
            lugar == std::string::npos ? recibido_.size() : lugar + fin.size();
        std::string tomado = recibido_.substr(0, largo);
        recibido_.erase(0, largo);
        return tomado;
    }

  private:
    int descriptor_ = -1;
    std::string recibido_;
};

std::string claveDeAhora() {
    double u = 0;
    return cifrar(textoDeClave(formatoDeHora(RelojReal().ahora())),
                  [&u] { return u = u > 0.9 ? 0 : u + 0.07; });
}

} // namespace

TEST(ClienteCrudo, SincronizaSeIdentificaLeeEscribeYSigueVivo) {
    Simulador s({0}, {"--registro", "01.10=261", "01.11=7"});
    Instalacion casa(Configuracion()
                         .puerto()
                         .estacion(1, "127.0.0.1", 1, s.puerto(0))
                         .bloque(1, "10", "0.2")
                         .bloque(1, "11", "0.2")
                         .texto());
    casa.agregarAjuste("BaseTiempoMilisegundos_KeepALive=1000");
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "1", "11"), 7);

    ClienteCrudo c(casa.escucha());
    // Both records come before the login, each block in a message of its own, without line ends.
    const std::string primera = c.hasta("[SINK_FIN]");
    EXPECT_NE(primera.find("[DRI]#1.1.10;"), std::string::npos) << primera;
    EXPECT_NE(primera.find("[DRI]#1.1.11;"), std::string::npos) << primera;
    EXPECT_EQ(primera.find_first_of("\r\n"), std::string::npos);
    c.enviar(claveDeAhora());
    EXPECT_TRUE(c.hasta("PassOK").ends_with("PassOK"));

    c.enviar("read;1.1.11;FINREAD;");
    EXPECT_NE(c.hasta("[DRI]#1.1.11;7;6;#[/DRI]").find("1.1.11;7;6"), std::string::npos);
    c.enviar("[Write]1.1.10;-5[/Write][write]1.1.11;8[/WRITE]");
    EXPECT_NE(c.hasta("[WRITE_OK][WRITE_OK]"), "");
    EXPECT_NE(c.hasta("[DRI]#1.1.10;-5;6;#[/DRI]").find("-5;6"), std::string::npos)
        << "a value that changed is told unasked";
    c.enviar("SINCRO");
    c.enviar("[KEEP_DESDE_SERVIDOR]");
    EXPECT_TRUE(c.hasta("[KEEP_DESDE_SERVIDOR]").ends_with("[KEEP_DESDE_SERVIDOR]"));
    EXPECT_TRUE(c.hasta("[KEEP_DESDE_DRI]").ends_with("[KEEP_DESDE_DRI]"));
    c.enviar("SINCRONIZAR");
    EXPECT_NE(c.hasta("[SINK_FIN]").find("1.1.11;8;6;"), std::string::npos);
    // Silent from here on: the driver lets it go, and listens for the next one.
    c.hasta("this never comes");
    ClienteCrudo otro(casa.escucha());
    otro.enviar(claveDeAhora());
    EXPECT_TRUE(otro.hasta("PassOK").ends_with("PassOK"));
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

} // namespace kv::extremo
