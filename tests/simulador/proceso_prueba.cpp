// SPDX-License-Identifier: Apache-2.0
// The program itself: started on free ports, spoken to in raw frames over sockets.

#include "apoyo/proceso.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <cerrno>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <memory>

namespace kv::simulador {
namespace {

const std::string kPrograma = std::string(KV_BIN) + "/SimuladorKV2200";

std::uint16_t puertoDe(const std::string& linea) {
    EXPECT_TRUE(linea.starts_with("Escuchando 127.0.0.1:")) << linea;
    return static_cast<std::uint16_t>(std::stoi(linea.substr(linea.rfind(':') + 1)));
}

class Cliente {
  public:
    explicit Cliente(std::uint16_t puerto) : d_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in direccion{};
        direccion.sin_family = AF_INET;
        direccion.sin_port = htons(puerto);
        direccion.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval limite{20, 0}; // an answer that never comes fails the test, not its host
        setsockopt(d_, SOL_SOCKET, SO_RCVTIMEO, &limite, sizeof limite);
        const int si = 1;
        setsockopt(d_, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        EXPECT_EQ(connect(d_, reinterpret_cast<sockaddr*>(&direccion), sizeof direccion), 0);
    }
    ~Cliente() { close(d_); }
    Cliente(const Cliente&) = delete;
    Cliente& operator=(const Cliente&) = delete;

    void enviar(const std::string& bytes) const {
        EXPECT_EQ(send(d_, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    /// So many bytes, or fewer when the link ends.
    [[nodiscard]] std::string recibir(std::size_t largo) const {
        std::string bytes(largo, '\0');
        const ssize_t n = recv(d_, bytes.data(), largo, MSG_WAITALL);
        bytes.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
        return bytes;
    }
    /// The value of the next answer, which must be a good one.
    [[nodiscard]] int valor() const {
        const std::string bytes = recibir(kLargoRespuesta);
        Respuesta r{};
        if (bytes.size() != r.size()) return -99999;
        std::copy(bytes.begin(), bytes.end(), r.begin());
        return verificarTramaRespuesta(r) ? valorDeRespuesta(r) : -99998;
    }

  private:
    int d_;
};

std::string texto(const std::optional<Solicitud>& s) { return {s->begin(), s->end()}; }

std::string leer(const char* registro, const char* estacion) {
    return texto(armarTramaLectura(registro, estacion));
}

std::string escribir(const char* registro, const char* estacion, double valor) {
    return texto(armarTramaEscritura(registro, estacion, valor));
}

} // namespace

TEST(SimuladorProceso, RespondeSobreSocketsReales) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0", "127.0.0.1:0", "--registro", "01.1F=261",
               "25.1F=-2", "--traza"});
    const auto uno = puertoDe(p.linea());
    const auto dos = puertoDe(p.linea());
    {
        const Cliente c(uno);
        c.enviar(leer("1F", "1"));
        EXPECT_EQ(c.recibir(8), std::string("\x07\x01\x00\x1F\x00\x01\x05\x26", 8));
        // Split anywhere, run together, and with a bad one between: answered in order.
        const std::string todo =
            leer("1F", "25") + "R" + escribir("10", "1", 1000) + leer("10", "1") + leer("1F", "1");
        for (const char b : todo)
            c.enviar({b});
        EXPECT_EQ(c.valor(), -2);
        EXPECT_EQ(c.valor(), 1000);
        EXPECT_EQ(c.valor(), 1000);
        EXPECT_EQ(c.valor(), 261);
        const Cliente otra(dos);
        otra.enviar(leer("10", "1")); // the same station at another address
        EXPECT_EQ(otra.valor(), 0);
    }
    EXPECT_EQ(p.linea(), "127.0.0.1:" + std::to_string(uno) + " #1 conectado");
    EXPECT_EQ(p.linea(), "127.0.0.1:" + std::to_string(uno) + " #1 <- 52 01 00 1F 00 00 72");
    EXPECT_EQ(p.linea(), "127.0.0.1:" + std::to_string(uno) + " #1 -> 07 01 00 1F 00 01 05 26");
    EXPECT_EQ(p.terminar(SIGTERM), 0);
}

TEST(SimuladorProceso, MilClientesALaVez) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0", "--registro", "01.1F=77"});
    const auto puerto = puertoDe(p.linea());
    std::vector<std::unique_ptr<Cliente>> clientes;
    for (int i = 0; i < 900; ++i)
        clientes.push_back(std::make_unique<Cliente>(puerto));
    for (const auto& c : clientes)
        c->enviar(leer("1F", "1") + escribir("20", "1", 5));
    for (const auto& c : clientes) {
        EXPECT_EQ(c->valor(), 77);
        EXPECT_EQ(c->valor(), 5);
    }
    EXPECT_EQ(p.terminar(SIGINT), 0);
}

TEST(SimuladorProceso, FallasPorEstacionYOrdenConRetardos) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0", "--registro", "01.1F=1", "02.1F=2",
               "03.1F=3", "--retardo-ms", "0-30", "--fragmentar", "--estacion",
               "02,sin-respuesta=1", "--estacion", "03,perder-respuesta-de-escritura=1"});
    const Cliente c(puertoDe(p.linea()));
    std::string todo;
    for (int i = 0; i < 10; ++i)
        todo += leer("1F", "1") + leer("1F", "2") + leer("1F", "3");
    c.enviar(todo + escribir("1F", "3", 33) + leer("1F", "3"));
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(c.valor(), 1);
        EXPECT_EQ(c.valor(), 3);
    }
    EXPECT_EQ(c.valor(), 33); // the write was stored, its answer lost
    EXPECT_EQ(p.terminar(SIGTERM), 0);
}

TEST(SimuladorProceso, CortaLosEnlacesYVuelveAAceptar) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0", "--cortar-cada", "0.05"});
    const auto puerto = puertoDe(p.linea());
    for (int i = 0; i < 3; ++i) {
        const Cliente c(puerto);
        EXPECT_EQ(c.recibir(1), "");
    }
    EXPECT_EQ(p.terminar(SIGTERM), 0);
}

TEST(SimuladorProceso, CortaDeGolpeComoQuienMuere) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0", "--estacion",
               "*,cortar-cada=0.05,cortar-de-golpe"});
    const Cliente c(puertoDe(p.linea()));
    errno = 0;
    EXPECT_EQ(c.recibir(1), "");
    EXPECT_EQ(errno, ECONNRESET);
    EXPECT_EQ(p.terminar(SIGTERM), 0);
}

TEST(SimuladorProceso, UnaDireccionOcupadaTerminaCon1) {
    Proceso p({kPrograma, "--escuchar", "127.0.0.1:0"});
    const auto puerto = puertoDe(p.linea());
    Proceso q({kPrograma, "--escuchar", "127.0.0.1:" + std::to_string(puerto)});
    EXPECT_EQ(q.linea(), "");
    EXPECT_EQ(q.terminar(), 1);
    EXPECT_EQ(p.terminar(SIGTERM), 0);
}

TEST(SimuladorProceso, UnaSalidaQueNoSePuedeEscribirTerminaCon1) {
    const std::string orden = "exec " + kPrograma + " --escuchar 127.0.0.1:0 --traza";
    Proceso llena({"/bin/sh", "-c", orden + " >/dev/full"});
    EXPECT_EQ(llena.terminar(), 1);
    EXPECT_NE(llena.errores().find("no se pudo escribir"), std::string::npos);
}

} // namespace kv::simulador
