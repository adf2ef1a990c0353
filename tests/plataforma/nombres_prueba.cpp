// SPDX-License-Identifier: Apache-2.0
// Stations by name and by IPv6: who is asked, what becomes of what is answered, and that nothing
// waits for it.

#include "plataforma/apoyo.h"

#include "platform/epoll/resolutor.h"
#include "platform/maquina.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fstream>
#include <future>
#include <mutex>
#include <netinet/in.h>

namespace kv {
namespace {

Maquina maquina(const char* texto) {
    Maquina m{};
    auto& v4 = reinterpret_cast<sockaddr_in&>(m);  // NOLINT
    auto& v6 = reinterpret_cast<sockaddr_in6&>(m); // NOLINT
    m.ss_family = AF_INET;
    if (inet_pton(AF_INET, texto, &v4.sin_addr) == 1) return m;
    m = {};
    m.ss_family = AF_INET6;
    EXPECT_EQ(inet_pton(AF_INET6, texto, &v6.sin6_addr), 1);
    return m;
}

/// A name service of a test's own. Looks are taken in threads, so it is locked.
class Guia {
  public:
    void poner(const std::string& nombre, std::vector<const char*> direcciones) {
        const std::lock_guard turno(cerrojo_);
        auto& r = nombres_[nombre];
        r.clear();
        for (const char* d : direcciones)
            r.push_back(maquina(d));
    }
    NombreResuelto operator()(const std::string& nombre) {
        const std::lock_guard turno(cerrojo_);
        const auto n = nombres_.find(nombre);
        if (n == nombres_.end()) return {{}, "nadie conoce el nombre " + nombre};
        return {n->second, ""};
    }

  private:
    std::mutex cerrojo_;
    std::map<std::string, std::vector<Maquina>> nombres_;
};

/// Listens, and never takes who comes: `fila` of them are connected all the same, the others go on
/// asking.
class Puerta {
  public:
    Puerta(const char* direccion, int fila, std::uint32_t en = 0) {
        Maquina m = maquina(direccion);
        const bool seis = m.ss_family == AF_INET6;
        auto& v4 = reinterpret_cast<sockaddr_in&>(m); // NOLINT
        v4.sin_port = htons(static_cast<std::uint16_t>(en));
        socklen_t largo = seis ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
        auto* generica = reinterpret_cast<sockaddr*>(&m); // NOLINT
        escucha_ = socket(m.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (escucha_ < 0 || bind(escucha_, generica, largo) != 0 || listen(escucha_, fila) != 0)
            return;
        getsockname(escucha_, generica, &largo);
        puerto = ntohs(v4.sin_port); // in the same place for both kinds
    }
    ~Puerta() { close(escucha_); }
    Puerta(const Puerta&) = delete;
    Puerta& operator=(const Puerta&) = delete;
    std::uint32_t puerto = 0; ///< 0: it could not

  private:
    int escucha_ = -1;
};

bool decidido(const Zocalo& z) {
    return z.estado() == EstadoZocalo::Conectado || z.estado() == EstadoZocalo::Error;
}

} // namespace

TEST(Nombres, QueTextoPuedeSerUnaMaquina) {
    using enum ClaseDeMaquina;
    const std::vector<std::pair<std::string, ClaseDeMaquina>> casos{
        {"10.0.0.1", IPv4},
        {"::1", IPv6},
        {"FE80::1%eth0.12", IPv6},
        {"fe80::1%", Ninguna},
        {"plc-1.planta.local", Nombre},
        {"plc1", Nombre},
        {"1plc.", Nombre},
        {std::string(63, 'a') + ".b", Nombre},
        {"", Ninguna},
        {".", Ninguna},
        {"10.0.0.300", Ninguna},
        {"010.0.0.1", Ninguna}, // 8.0.0.1 to a resolver
        {"10.1", Ninguna},
        {"0x7f.1", Ninguna},
        {"plc.0x7f", Ninguna},
        {"[::1]", Ninguna},
        {"10.0.0.1%eth0", Ninguna},
        {"plc uno", Ninguna},
        {"-plc", Ninguna},
        {"plc..local", Ninguna},
        {std::string("10.0.0.1\0x", 10), Ninguna},
        {std::string(64, 'a'), Ninguna},
        {std::string(500, 'a'), Ninguna},
    };
    for (const auto& [texto, clase] : casos)
        EXPECT_EQ(claseDeMaquina(texto), clase) << texto;
}

TEST(Nombres, SeAveriguanDeNuevoCadaVezYSePruebanTodasSusDirecciones) {
    Guia guia;
    BucleEpoll bucle;
    bucle.resolverCon(std::ref(guia));
    Oyente oyente;
    const Puerta puerta("127.0.0.1", 8);
    const auto z = bucle.crearZocalo(oyente, 0);
    const auto intentar = [&](const std::string& nombre) {
        z->conectar(nombre, puerta.puerto);
        EXPECT_EQ(z->estado(), EstadoZocalo::Conectando);
        atenderHasta(bucle, [&] { return decidido(*z); });
        return z->estado();
    };
    EXPECT_EQ(intentar("plc"), EstadoZocalo::Error);
    EXPECT_EQ(z->motivo(), "nadie conoce el nombre plc");
    guia.poner("plc", {"127.0.0.3"});
    EXPECT_EQ(intentar(" plc\t"), EstadoZocalo::Error) << "refused";
    guia.poner("plc", {"127.0.0.2", "::1", "127.0.0.1"});
    EXPECT_EQ(intentar("plc"), EstadoZocalo::Conectado);
    EXPECT_EQ(z->motivo(), "");
    EXPECT_EQ(intentar("  127.0.0.1 "), EstadoZocalo::Conectado);
    EXPECT_EQ(oyente.suceso, "cortado;cortado;conectado;conectado;");
    EXPECT_FALSE(resolverConElSistema("localhost").maquinas.empty());
}

TEST(Nombres, UnaDireccionQueNoContestaLeDejaElTurnoALaOtra) {
    Guia guia;
    BucleEpoll bucle;
    bucle.resolverCon(std::ref(guia));
    Oyente oyente;
    const Puerta sorda("127.0.0.2", 0);
    const Puerta buena("127.0.0.3", 8, sorda.puerto);
    ASSERT_EQ(buena.puerto, sorda.puerto);
    const auto ocupa = bucle.crearZocalo(oyente, 0);
    ocupa->conectar("127.0.0.2", sorda.puerto);
    atenderHasta(bucle, [&] { return ocupa->estado() == EstadoZocalo::Conectado; });
    guia.poner("plc", {"127.0.0.2", "127.0.0.3"});
    const auto z = bucle.crearZocalo(oyente, 0);
    bool resuelto = false;
    for (int i = 0; i < 50 && z->estado() != EstadoZocalo::Conectado; ++i) {
        z->conectar("plc", sorda.puerto); // as a supervision does that has waited long enough
        resuelto = false;
        const auto t = bucle.crearTemporizador([&] { resuelto = true; });
        t->rearmar(100);
        atenderHasta(bucle, [&] { return resuelto || decidido(*z); });
    }
    EXPECT_EQ(z->estado(), EstadoZocalo::Conectado);
}

TEST(Nombres, QuienTardaEnContestarNoDetieneANadie) {
    struct Marcas { // of threads that may outlive the loop
        std::promise<void> abrir;
        std::shared_future<void> abierto = abrir.get_future().share();
        std::mutex cerrojo;
        int preguntando = 0, lasMas = 0;
    };
    const auto marcas = std::make_shared<Marcas>();
    const auto contar = [marcas](int cuantas) {
        const std::lock_guard turno(marcas->cerrojo);
        marcas->preguntando += cuantas;
        marcas->lasMas = std::max(marcas->lasMas, marcas->preguntando);
    };
    BucleEpoll bucle;
    bucle.resolverCon([marcas, contar](const std::string& nombre) -> NombreResuelto {
        contar(1);
        if (nombre != "listo") marcas->abierto.wait();
        contar(-1);
        return {{}, nombre};
    });
    Oyente oyente;
    std::vector<std::unique_ptr<Zocalo>> zocalos;
    const auto pedir = [&](const std::string& nombre) -> Zocalo& {
        zocalos.push_back(bucle.crearZocalo(oyente, zocalos.size()));
        zocalos.back()->conectar(nombre, 502);
        return *zocalos.back();
    };
    Zocalo& primero = pedir("listo");
    atenderHasta(bucle, [&] { return decidido(primero); });
    EXPECT_EQ(std::exchange(oyente.suceso, ""), "cortado;");
    for (std::size_t i = 0; i < Resolutor::kNombres; ++i)
        pedir("plc" + std::to_string(i));
    EXPECT_EQ(pedir("uno-mas").estado(), EstadoZocalo::Error);
    EXPECT_EQ(pedir("plc7").estado(), EstadoZocalo::Conectando) << "asked for already";
    int tics = 0;
    const auto t = bucle.crearTemporizador([&] { ++tics; });
    t->rearmar(1);
    atenderHasta(bucle, [&] { return tics == 20; });
    // One gives up and one goes; the other one that wanted the same gets the answer.
    zocalos[1]->cerrar();
    zocalos[8].reset(); // plc7
    marcas->abrir.set_value();
    atenderHasta(bucle, [&] { return decidido(*zocalos.back()); });
    atenderHasta(bucle, [&] { return decidido(*zocalos[Resolutor::kNombres]); });
    EXPECT_EQ(zocalos[1]->estado(), EstadoZocalo::Cerrado);
    EXPECT_LE(marcas->lasMas, Resolutor::kHilos);
}

TEST(Nombres, NadieEsperaAlTerminar) {
    // What the thread uses outlives the loop, as a system's library does.
    struct Marcas {
        std::promise<void> empezo, abrir, termino;
    };
    const auto marcas = std::make_shared<Marcas>();
    std::future<void> terminado = marcas->termino.get_future();
    {
        BucleEpoll bucle;
        bucle.resolverCon([marcas](const std::string&) -> NombreResuelto {
            marcas->empezo.set_value();
            marcas->abrir.get_future().wait();
            marcas->termino.set_value();
            return {};
        });
        Oyente oyente;
        const auto z = bucle.crearZocalo(oyente, 0);
        z->conectar("plc", 502);
        marcas->empezo.get_future().wait();
    }
    EXPECT_EQ(terminado.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    marcas->abrir.set_value();
    terminado.wait();
}

TEST(Nombres, TambienIPv6) {
    const Puerta puerta("::1", 8);
    if (puerta.puerto == 0) GTEST_SKIP() << "esta maquina no tiene IPv6";
    BucleEpoll bucle;
    Oyente oyente;
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar("::1", puerta.puerto);
    atenderHasta(bucle, [&] { return decidido(*z); });
    EXPECT_EQ(z->estado(), EstadoZocalo::Conectado) << z->motivo();
}

TEST(Nombres, QuienSeEncuentraConsigoMismoNoTieneEnlace) {
    if (!hayRedPropia()) GTEST_SKIP() << "sin permiso para una red propia";
    enRedPropia([] {
        cable(true);
        // The only port that a connection can come from is the one that it goes to.
        std::ofstream("/proc/sys/net/ipv4/ip_local_port_range") << "40000 40000" << std::flush;
        BucleEpoll bucle;
        Oyente oyente;
        const auto z = bucle.crearZocalo(oyente, 0);
        z->conectar("127.0.0.1", 40000);
        atenderHasta(bucle, [&] { return decidido(*z); });
        EXPECT_EQ(z->estado(), EstadoZocalo::Error);
        EXPECT_EQ(z->motivo(), "al otro extremo no hay nadie");
        EXPECT_EQ(oyente.suceso, "cortado;");
    });
}

TEST(NombresSimulados, ConDemoraConFallasYDeNuevoCadaVez) {
    class Otro final : public ExtremoSimulado {
      public:
        void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> /*b*/) override {}
    } otro;
    BucleSimulado bucle;
    RedSimulada& red = bucle.red();
    Oyente oyente;
    const auto z = bucle.crearZocalo(oyente, 0);
    const auto intentar = [&] {
        z->conectar(" plc ", 502);
        bucle.avanzar(100);
        return z->estado();
    };
    red.atender("10.0.0.2", 502, otro);
    red.nombrar("plc", "");
    EXPECT_EQ(intentar(), EstadoZocalo::Error);
    EXPECT_EQ(z->motivo(), "nadie conoce el nombre plc");
    red.nombrar("plc", "10.0.0.1");
    EXPECT_EQ(intentar(), EstadoZocalo::Error);
    red.nombrar("plc", "10.0.0.2");
    EXPECT_EQ(intentar(), EstadoZocalo::Conectado);
    red.demorarNombres(150'000);
    EXPECT_EQ(intentar(), EstadoZocalo::Conectando);
    bucle.avanzar(100);
    EXPECT_EQ(z->estado(), EstadoZocalo::Conectado);
    red.demorarNombres(-1);
    EXPECT_EQ(intentar(), EstadoZocalo::Conectando);
    bucle.avanzar(3'600'000);
    EXPECT_EQ(z->estado(), EstadoZocalo::Conectando);
    z->cerrar();
    EXPECT_EQ(oyente.suceso, "cortado;cortado;conectado;conectado;");
}

} // namespace kv
