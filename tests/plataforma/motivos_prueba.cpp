// SPDX-License-Identifier: Apache-2.0
// Why a link is not up, as the kernel says it and as the simulated network does: the same words,
// the same states, the same events.

#include "plataforma/apoyo.h"

#include "platform/motivo_de_enlace.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <system_error>

namespace kv {
namespace {

/// How an attempt ended.
struct Fin {
    EstadoZocalo estado;
    std::string motivo, sucesos;
    bool operator==(const Fin&) const = default;
    friend void PrintTo(const Fin& f, std::ostream* donde) {
        *donde << static_cast<int>(f.estado) << " " << f.motivo << " " << f.sucesos;
    }
};

constexpr const char* kLejos = "10.77.0.9";

/// A listening port whose links are taken and reset, as by a program that was killed.
class QuienReinicia {
  public:
    QuienReinicia() : escucha_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        puerto = escucharEnElLazo(escucha_);
    }
    ~QuienReinicia() { close(escucha_); }
    QuienReinicia(const QuienReinicia&) = delete;
    QuienReinicia& operator=(const QuienReinicia&) = delete;
    void reiniciar() const {
        const int d = accept(escucha_, nullptr, nullptr);
        const linger nada{1, 0};
        setsockopt(d, SOL_SOCKET, SO_LINGER, &nada, sizeof nada);
        close(d);
    }
    std::uint32_t puerto = 0;

  private:
    int escucha_;
};

/// A route to 10.77.0.0/24 of the kind given, over the loop where it is one that leads somewhere.
void ruta(unsigned char clase) {
    struct {
        nlmsghdr cabecera;
        rtmsg cuerpo;
        std::array<char, 64> datos;
    } pedido{};
    pedido.cabecera = {NLMSG_LENGTH(sizeof(rtmsg)), RTM_NEWROUTE,
                       NLM_F_REQUEST | NLM_F_ACK | NLM_F_CREATE | NLM_F_REPLACE, 1, 0};
    pedido.cuerpo = {AF_INET, 24, 0, 0, RT_TABLE_MAIN, RTPROT_BOOT, RT_SCOPE_UNIVERSE, clase, 0};
    if (clase == RTN_UNICAST) pedido.cuerpo.rtm_scope = RT_SCOPE_LINK;
    const auto agregar = [&pedido](unsigned short cual, const void* dato) {
        auto* a = reinterpret_cast<rtattr*>(reinterpret_cast<char*>(&pedido) + // NOLINT
                                            NLMSG_ALIGN(pedido.cabecera.nlmsg_len));
        a->rta_type = cual;
        a->rta_len = RTA_LENGTH(4);
        std::memcpy(RTA_DATA(a), dato, 4);
        pedido.cabecera.nlmsg_len = NLMSG_ALIGN(pedido.cabecera.nlmsg_len) + RTA_LENGTH(4);
    };
    const in_addr_t destino = inet_addr("10.77.0.0");
    const int lazo = 1;
    agregar(RTA_DST, &destino);
    if (clase == RTN_UNICAST) agregar(RTA_OIF, &lazo);
    const int d = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    EXPECT_GT(send(d, &pedido, pedido.cabecera.nlmsg_len, 0), 0);
    struct {
        nlmsghdr cabecera;
        nlmsgerr error;
        std::array<char, 256> resto;
    } respuesta{};
    EXPECT_GT(recv(d, &respuesta, sizeof respuesta, 0), 0);
    EXPECT_EQ(respuesta.error.error, 0) << std::strerror(-respuesta.error.error);
    close(d);
}

Fin enElNucleo(const char* ip, std::uint32_t puerto = 502) {
    BucleEpoll bucle;
    Oyente oyente;
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar(ip, puerto);
    atenderHasta(bucle, [&] { return z->estado() == EstadoZocalo::Error; });
    return {z->estado(), z->motivo(), oyente.suceso};
}

Fin simulado(int error, std::int64_t demoraUs) {
    BucleSimulado bucle;
    Oyente oyente;
    bucle.red().negar(kLejos, 502, error, demoraUs);
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar(kLejos, 502);
    bucle.avanzarUs(demoraUs);
    return {z->estado(), z->motivo(), oyente.suceso};
}

class Otro final : public ExtremoSimulado {
  public:
    void alConectar(IdEnlace e) override { enlace = e; }
    void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> /*b*/) override { ++llegadas; }
    IdEnlace enlace = 0;
    int llegadas = 0;
};

} // namespace

TEST(Motivos, DeQuienRechazaYDeQuienReiniciaAlConectarOYaConectado) {
    QuienReinicia otro;
    BucleEpoll bucle;
    Oyente oyente;
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar("127.0.0.1", otro.puerto);
    atenderHasta(bucle, [&] { return z->estado() == EstadoZocalo::Conectado; });
    otro.reiniciar();
    atenderHasta(bucle, [&] { return z->estado() != EstadoZocalo::Conectado; });
    const Fin arriba{EstadoZocalo::Error, "la corto el otro extremo de golpe",
                     "conectado;cortado;"};
    EXPECT_EQ((Fin{z->estado(), z->motivo(), oyente.suceso}), arriba);

    z->conectar("127.0.0.1", otro.puerto);
    otro.reiniciar(); // before the loop has seen that it is up
    atenderHasta(bucle, [&] { return z->estado() == EstadoZocalo::Error; });
    EXPECT_EQ(z->motivo(), "el otro extremo la corta apenas se establece");
    EXPECT_EQ(z->motivo(), simulado(ECONNRESET, 300).motivo);

    BucleSimulado deMentira;
    Oyente suyo;
    Otro lejos;
    deMentira.red().atender(kLejos, 502, lejos);
    const auto s = deMentira.crearZocalo(suyo, 0);
    s->conectar(kLejos, 502);
    deMentira.avanzar(10);
    deMentira.red().enviar(lejos.enlace, bytes("lo ultimo"));
    deMentira.red().romper(lejos.enlace, ECONNRESET);
    s->enviar(bytes("a nadie"));
    deMentira.avanzar(10);
    EXPECT_EQ((Fin{s->estado(), s->motivo(), suyo.suceso}), arriba);
    EXPECT_EQ(suyo.datos, "lo ultimo") << "seen before the reset, as it was sent";
    EXPECT_EQ(lejos.llegadas, 0) << "who has reset reads no more";

    Fin rechazo{EstadoZocalo::Error, "rechaza la conexion (nadie atiende ese puerto)", "cortado;"};
    const std::uint32_t cerrado = QuienReinicia().puerto;
    EXPECT_EQ(enElNucleo("127.0.0.1", cerrado), rechazo);
    EXPECT_EQ(simulado(ECONNREFUSED, 300), rechazo);
    rechazo = {EstadoZocalo::Error, "no hay ruta hasta esa red", ""};
    EXPECT_EQ(enElNucleo("224.0.0.1"), rechazo) << "an address of many machines";
}

TEST(Motivos, DeLasRutasQueNoLlevan) {
    if (!hayRedPropia()) GTEST_SKIP() << "sin permiso para una red propia";
    enRedPropia([] {
        cable(true);
        const auto enLaLlamada = [](const char* motivo) {
            return Fin{EstadoZocalo::Error, motivo, ""};
        };
        const Fin sinRed = enLaLlamada("no hay ruta hasta esa red");
        EXPECT_EQ(enElNucleo(kLejos), sinRed);
        EXPECT_EQ(simulado(ENETUNREACH, 0), sinRed);
        ruta(RTN_UNREACHABLE);
        const Fin sinRuta = enLaLlamada("no hay ruta hasta esa direccion");
        EXPECT_EQ(enElNucleo(kLejos), sinRuta);
        EXPECT_EQ(simulado(EHOSTUNREACH, 0), sinRuta);
        ruta(RTN_PROHIBIT);
        EXPECT_EQ(enElNucleo(kLejos),
                  enLaLlamada("las rutas o el cortafuegos de esta maquina no lo permiten"));
        ruta(RTN_BLACKHOLE);
        EXPECT_EQ(enElNucleo(kLejos),
                  enLaLlamada("las rutas de esta maquina anulan esa direccion"));
    });
}

TEST(Motivos, DelNucleoQueSeCansaDeIntentar) {
    if (!hayRedPropia()) GTEST_SKIP() << "sin permiso para una red propia";
    enRedPropia([] {
        cable(true);
        ruta(RTN_UNICAST); // leads to nobody
        std::ofstream("/proc/sys/net/ipv4/tcp_syn_retries") << 1;
        const Fin cansado{EstadoZocalo::Error, "nadie contesta en esa direccion", "cortado;"};
        EXPECT_EQ(enElNucleo(kLejos), cansado);
        EXPECT_EQ(simulado(ETIMEDOUT, 127'000'000), cansado);
    });
}

/// Whatever a socket has failed with can be said in English: all but the system's own words.
TEST(Motivos, SeDicenEnInglesTodos) {
    for (int m = 0; m <= static_cast<int>(Motivo::LineaQueNoCalla); ++m) {
        const std::string es = enPalabras(static_cast<Motivo>(m), "plc.norte");
        const std::string en = motivoEn(Idioma::Ingles, es);
        EXPECT_NE(en, es);
        EXPECT_EQ(motivoEn(Idioma::Castellano, es), es);
        EXPECT_EQ(es.find("plc.norte") != std::string::npos,
                  en.find("plc.norte") != std::string::npos);
    }
    for (const FaseDeEnlace fase :
         {FaseDeEnlace::AlConectar, FaseDeEnlace::AlEscuchar, FaseDeEnlace::Establecido}) {
        for (int error = 1; error < 134; ++error) {
            const std::string es = motivoDeEnlace(error, fase);
            EXPECT_EQ(motivoEn(Idioma::Ingles, es) == es,
                      es == std::generic_category().message(error))
                << es;
        }
    }
    EXPECT_EQ(motivoEn(Idioma::Ingles, "plc: Name has no usable address"),
              "plc: Name has no usable address");
}

} // namespace kv
