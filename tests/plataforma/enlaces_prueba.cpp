// SPDX-License-Identifier: Apache-2.0
// What becomes of bytes that have been sent and have not arrived: acknowledged, held back by a
// cable that is out, aborted.

#include "plataforma/apoyo.h"

#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <netinet/in.h>
#include <sched.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

namespace kv {
namespace {

/// A station's end that does nothing by itself: it acknowledges until its memory is full.
class Callado {
  public:
    Callado() : escucha_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const int chica = 4096;
        setsockopt(escucha_, SOL_SOCKET, SO_RCVBUF, &chica, sizeof chica);
        puerto = escucharEnElLazo(escucha_);
    }
    ~Callado() {
        close(escucha_);
        if (enlace_ >= 0) close(enlace_);
    }
    Callado(const Callado&) = delete;
    Callado& operator=(const Callado&) = delete;

    void tomar() {
        if (enlace_ >= 0) close(enlace_);
        enlace_ = accept(escucha_, nullptr, nullptr);
    }
    /// Takes so many bytes, or all there are until the end; `errno` is 0 or says why it ended.
    std::size_t leer(std::size_t hasta) {
        std::array<char, 65536> trozo{};
        std::size_t todos = 0;
        ssize_t n = 1;
        errno = 0;
        while (todos < hasta && (n = recv(enlace_, trozo.data(), trozo.size(), 0)) > 0)
            todos += static_cast<std::size_t>(n);
        return todos;
    }
    /// Sends what the other side's host takes; so many bytes.
    std::size_t llenar() {
        const std::string trozo(10'000, 'x');
        std::size_t todos = 0;
        ssize_t n = 0;
        while ((n = send(enlace_, trozo.data(), trozo.size(), MSG_DONTWAIT)) > 0)
            todos += static_cast<std::size_t>(n);
        return todos;
    }
    /// It sends nothing more.
    void colgar() { shutdown(enlace_, SHUT_WR); }
    std::uint32_t puerto = 0;

  private:
    int escucha_;
    int enlace_ = -1;
};

void conectar(BucleEpoll& bucle, Zocalo& z, Callado& otro) {
    z.conectar("127.0.0.1", otro.puerto);
    atenderHasta(bucle, [&] { return z.estado() == EstadoZocalo::Conectado; });
    otro.tomar();
}

/// Bytes that the kernel still means to send, whoever's they were.
std::size_t porSalir() {
    std::ifstream tabla("/proc/self/net/tcp");
    std::string linea;
    std::getline(tabla, linea);
    std::size_t todos = 0;
    while (std::getline(tabla, linea)) {
        std::istringstream columnas(linea);
        std::string numero, local, remota, estado, colas;
        columnas >> numero >> local >> remota >> estado >> colas;
        const bool escucha = estado == "0A"; // whose queue is that of who wants to connect
        if (!escucha) todos += std::stoul(colas.substr(0, colas.find(':')), nullptr, 16);
    }
    return todos;
}

class Otro final : public ExtremoSimulado {
  public:
    void alConectar(IdEnlace e) override { enlace = e; }
    void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> b) override {
        datos.append(b.begin(), b.end());
    }
    void alCortarse(IdEnlace /*e*/) override { datos += '.'; }
    IdEnlace enlace = 0;
    std::string datos;
};

/// A link of the simulated network.
struct Simulado {
    Simulado() {
        bucle.red().atender("10.0.0.1", 502, otro);
        conectar();
    }
    void conectar() {
        z->conectar("10.0.0.1", 502);
        bucle.avanzar(10);
    }
    BucleSimulado bucle;
    Oyente oyente;
    Otro otro;
    std::unique_ptr<Zocalo> z = bucle.crearZocalo(oyente, 0);
};

} // namespace

TEST(Enlaces, LoQueSeAbortaNoSaleMas) {
    BucleEpoll bucle;
    Oyente oyente;
    Callado otro;
    const auto z = bucle.crearZocalo(oyente, 0);
    conectar(bucle, *z, otro);
    // It has them although its program has not read them.
    z->enviar(bytes("pedido."));
    while (z->bytesSinConfirmar() > 0)
        sched_yield();
    const std::string trozo(10'000, 'x');
    std::size_t enviados = 7;
    while (z->enCola() == 0 && z->enviar(bytes(trozo)))
        enviados += trozo.size();
    const std::size_t enElNucleo = z->bytesSinConfirmar() - z->enCola();
    EXPECT_GT(enElNucleo, 0U);
    EXPECT_LT(enElNucleo, enviados - z->enCola());
    z->abortar();
    EXPECT_EQ(z->estado(), EstadoZocalo::Cerrado);
    EXPECT_EQ(z->bytesSinConfirmar(), 0U);
    EXPECT_LT(otro.leer(enviados), enviados - trozo.size());
    EXPECT_EQ(errno, ECONNRESET);
    bucle.atender();
    EXPECT_EQ(oyente.suceso, "conectado;");
    conectar(bucle, *z, otro);
    EXPECT_TRUE(z->enviar(bytes("de nuevo")));
    EXPECT_EQ(otro.leer(8), 8U);
}

TEST(Enlaces, MientrasSeLoFrenaNoSeSabeNadaYDespuesTodoEnOrden) {
    BucleEpoll bucle;
    Oyente oyente;
    Callado otro;
    const auto z = bucle.crearZocalo(oyente, 0);
    conectar(bucle, *z, otro);
    z->agruparEnvios(true);
    z->frenar(true);
    z->enviar(bytes("espera"));
    const std::size_t mandados = otro.llenar();
    bucle.atender();
    EXPECT_EQ(oyente.datos, "");
    EXPECT_EQ(z->enCola(), 6U) << "what is sent in groups waits as well";
    EXPECT_EQ(otro.llenar(), 0U) << "the far side is held back";
    otro.colgar();
    bucle.atender();
    pollfd p{bucle.descriptor(), POLLIN, 0};
    EXPECT_EQ(poll(&p, 1, 0), 0) << "a loop with nothing to do sleeps";
    EXPECT_EQ(oyente.suceso, "conectado;");
    z->frenar(false);
    atenderHasta(bucle, [&] { return oyente.suceso == "conectado;cortado;"; });
    EXPECT_EQ(oyente.datos.size(), mandados);
    EXPECT_EQ(otro.leer(7), 6U);

    Simulado s;
    s.z->agruparEnvios(true);
    s.z->frenar(true);
    s.z->enviar(bytes("espera"));
    s.bucle.red().enviar(s.otro.enlace, bytes("uno"));
    s.bucle.avanzar(5);
    s.bucle.red().enviar(s.otro.enlace, bytes("dos"));
    s.bucle.red().cortar(s.otro.enlace);
    s.bucle.avanzar(5);
    EXPECT_EQ(s.oyente.datos + s.oyente.suceso + s.otro.datos, "conectado;");
    s.z->frenar(false);
    s.bucle.avanzar(5);
    EXPECT_EQ(s.oyente.datos + s.oyente.suceso, "unodosconectado;cortado;");
}

TEST(Enlaces, UnGrupoQueCrecioSaleAntesDelFinDeLaVuelta) {
    const std::string mucho(Zocalo::kGrupo, 'x');
    BucleEpoll bucle;
    Oyente oyente;
    Callado otro;
    const auto z = bucle.crearZocalo(oyente, 0);
    conectar(bucle, *z, otro);
    z->limitarCola(4 * mucho.size());
    z->agruparEnvios(true);
    z->enviar(bytes("poco"));
    EXPECT_EQ(z->enCola(), 4U);
    z->frenar(true);
    z->enviar(bytes(mucho));
    EXPECT_EQ(z->enCola(), mucho.size() + 4) << "held, it waits whatever there is";
    z->frenar(false);
    z->enviar(bytes("mas"));
    EXPECT_LT(z->enCola(), mucho.size()) << "no turn has ended";

    Simulado s;
    s.z->limitarCola(4 * mucho.size());
    s.z->agruparEnvios(true);
    s.z->enviar(bytes("poco"));
    EXPECT_EQ(s.z->enCola(), 4U);
    s.z->enviar(bytes(mucho));
    EXPECT_LT(s.z->enCola(), mucho.size());
}

TEST(Enlaces, UnCableAfueraRetieneYLoAbortadoNoQuedaEnElNucleo) {
    if (!hayRedPropia()) GTEST_SKIP() << "sin permiso para una red propia";
    enRedPropia([] {
        cable(true);
        BucleEpoll bucle;
        Oyente oyente;
        Callado otro;
        const auto z = bucle.crearZocalo(oyente, 0);
        conectar(bucle, *z, otro);
        cable(false);
        EXPECT_TRUE(z->enviar(bytes("uno")));
        EXPECT_EQ(z->bytesSinConfirmar(), 3U);
        cable(true);
        EXPECT_EQ(otro.leer(3), 3U);
        while (z->bytesSinConfirmar() > 0)
            sched_yield();
        cable(false);
        EXPECT_TRUE(z->enviar(bytes("dos")));
        EXPECT_EQ(porSalir(), 3U);
        z->abortar();
        EXPECT_EQ(porSalir(), 0U);
        EXPECT_EQ(oyente.suceso, "conectado;");
    });
}

TEST(Enlaces, LaPacienciaValeParaEsteEnlaceYParaLosQueVienen) {
    if (!hayRedPropia()) GTEST_SKIP() << "sin permiso para una red propia";
    enRedPropia([] {
        cable(true);
        BucleEpoll bucle;
        Oyente oyente;
        Callado otro;
        const auto z = bucle.crearZocalo(oyente, 0);
        conectar(bucle, *z, otro);
        z->fijarPaciencia(300);
        for (int i = 0; i < 2; ++i) {
            cable(false);
            EXPECT_TRUE(z->enviar(bytes("uno")));
            atenderHasta(bucle, [&] { return z->estado() == EstadoZocalo::Error; });
            EXPECT_EQ(z->motivo(), "nadie confirma lo que se envia");
            cable(true);
            conectar(bucle, *z, otro);
        }
        EXPECT_EQ(oyente.suceso, "conectado;cortado;conectado;cortado;conectado;");
    });
}

TEST(EnlacesSimulados, LoRetenidoLlegaCuandoElCableVuelveSalvoLoAbortado) {
    Simulado s;
    s.z->enviar(bytes("a"));
    EXPECT_EQ(s.z->bytesSinConfirmar(), 1U);
    s.bucle.avanzar(1);
    EXPECT_EQ(s.z->bytesSinConfirmar(), 0U) << "acknowledged, though nobody has answered";
    s.bucle.red().interrumpir(s.otro.enlace);
    s.z->enviar(bytes("bcd"));
    s.bucle.avanzar(600'000);
    EXPECT_EQ(s.z->bytesSinConfirmar(), 3U);
    EXPECT_EQ(s.z->estado(), EstadoZocalo::Conectado);
    s.bucle.red().reanudar(s.otro.enlace);
    s.bucle.avanzar(1);
    EXPECT_EQ(s.z->bytesSinConfirmar(), 0U);
    s.bucle.red().interrumpir(s.otro.enlace);
    s.z->enviar(bytes("e"));
    s.z->cerrar(); // politely: the kernel keeps on
    s.bucle.avanzar(600'000);
    EXPECT_EQ(s.otro.datos, "abcd");
    s.bucle.red().reanudar(s.otro.enlace);
    s.bucle.avanzar(1);
    EXPECT_EQ(s.otro.datos, "abcde.");
    for (const std::int64_t us : {0, 100, 1000}) { // nothing has left, on its way, held back
        s.conectar();
        s.otro.datos.clear();
        s.bucle.red().interrumpir(s.otro.enlace);
        s.z->enviar(bytes("orden"));
        s.bucle.avanzarUs(us);
        s.z->abortar();
        s.bucle.avanzar(1000);
        s.bucle.red().reanudar(s.otro.enlace);
        s.bucle.avanzar(1000);
        EXPECT_EQ(s.otro.datos, "");
    }
    s.conectar();
    s.z->enviar(bytes("x"));
    s.bucle.avanzar(1);
    s.z->abortar();
    s.bucle.avanzar(1);
    EXPECT_EQ(s.otro.datos, "x.");
    EXPECT_EQ(s.z->estado(), EstadoZocalo::Cerrado);
    EXPECT_EQ(s.oyente.suceso, "conectado;conectado;conectado;conectado;conectado;");
}

TEST(EnlacesSimulados, LaPacienciaSeAcabaSoloSiNadieConfirma) {
    Simulado s;
    s.z->fijarPaciencia(2000);
    for (int i = 0; i < 100; ++i) { // a station that says nothing, but whose host acknowledges
        s.z->enviar(bytes("x"));
        s.bucle.avanzar(777);
    }
    EXPECT_EQ(s.z->estado(), EstadoZocalo::Conectado);
    for (int i = 0; i < 2; ++i) {
        s.bucle.red().interrumpir(s.otro.enlace);
        s.bucle.avanzar(60'000); // nothing sent, nothing missed
        s.z->enviar(bytes("orden"));
        s.bucle.avanzar(1999);
        EXPECT_EQ(s.z->estado(), EstadoZocalo::Conectado);
        s.bucle.avanzar(2);
        EXPECT_EQ(s.z->estado(), EstadoZocalo::Error);
        s.bucle.red().reanudar(s.otro.enlace);
        s.conectar();
    }
    EXPECT_EQ(s.oyente.suceso, "conectado;cortado;conectado;cortado;conectado;");
    EXPECT_EQ(s.otro.datos, std::string(100, 'x'));
}

} // namespace kv
