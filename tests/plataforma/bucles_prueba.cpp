// SPDX-License-Identifier: Apache-2.0
// The same rules on both loops: what the simulated one promises, the real one keeps.

#include "plataforma/apoyo.h"

#include "platform/epoll/bucle_epoll.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <vector>

#include <stdexcept>
#include <string>

namespace kv {

TEST(BucleEpoll, ConectaEscuchaHablaYCierra) {
    BucleEpoll bucle;
    Oyente del, delOtro;
    const auto servidor = bucle.crearZocalo(delOtro, 0);
    delOtro.alPedir = [&] { servidor->aceptar(); };
    servidor->escuchar("127.0.0.1", 0);
    ASSERT_EQ(servidor->estado(), EstadoZocalo::Escuchando) << servidor->motivo();
    const auto cliente = bucle.crearZocalo(del, 0);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    EXPECT_EQ(cliente->estado(), EstadoZocalo::Conectando);
    delOtro.alLlegar = [&](std::size_t, const std::string& t) {
        EXPECT_TRUE(servidor->enviar(bytes("<" + t + ">")));
        if (t == "fin") servidor->cerrar();
    };
    atenderHasta(bucle, [&] { return cliente->estado() == EstadoZocalo::Conectado; });
    EXPECT_TRUE(cliente->enviar(bytes("fin")));
    atenderHasta(bucle, [&] { return cliente->estado() == EstadoZocalo::CerradoPorElOtro; });
    EXPECT_EQ(del.datos, "<fin>");
    EXPECT_EQ(del.suceso, "conectado;cortado;");
    EXPECT_EQ(cliente->conexiones(), 1U);
    EXPECT_FALSE(cliente->enviar(bytes("x")));
}

TEST(BucleEpoll, UnPuertoCerradoYUnaDireccionImposibleSonErrores) {
    BucleEpoll bucle;
    Oyente oyente;
    const auto malo = bucle.crearZocalo(oyente, 0);
    malo->conectar("10.0.0.300", 502);
    EXPECT_EQ(malo->estado(), EstadoZocalo::Error);
    const auto ocupa = bucle.crearZocalo(oyente, 0);
    ocupa->escuchar("127.0.0.1", 0);
    const auto puerto = ocupa->puertoLocal();
    malo->escuchar("127.0.0.1", puerto);
    EXPECT_EQ(malo->estado(), EstadoZocalo::Error);
    EXPECT_FALSE(malo->motivo().empty());
    ocupa->cerrar();
    malo->conectar("127.0.0.1", puerto);
    atenderHasta(bucle, [&] { return malo->estado() == EstadoZocalo::Error; });
    EXPECT_EQ(oyente.suceso, "cortado;");
}

TEST(BucleEpoll, QuienNoLeeEsCerradoEnElLimiteYSinBloquear) {
    BucleEpoll bucle;
    Oyente oyente, callado;
    const auto servidor = bucle.crearZocalo(oyente, 0);
    oyente.alPedir = [&] { servidor->aceptar(); };
    servidor->escuchar("127.0.0.1", 0);
    const auto cliente = bucle.crearZocalo(callado, 1);
    cliente->limitarCola(1 << 20);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] {
        return cliente->estado() == EstadoZocalo::Conectado &&
               servidor->estado() == EstadoZocalo::Conectado;
    });
    // The loop does not turn any more: nobody reads.
    const std::string trozo(100'000, 'x');
    std::size_t enviados = 0;
    while (cliente->enviar(bytes(trozo)) && enviados < 1000)
        ++enviados;
    EXPECT_LT(enviados, 1000U);
    EXPECT_EQ(cliente->estado(), EstadoZocalo::Error);
}

TEST(BucleEpoll, LoQueElNucleoTomaAMediasLlegaEntero) {
    BucleEpoll bucle;
    Oyente oyente, callado;
    const auto servidor = bucle.crearZocalo(oyente, 0);
    oyente.alPedir = [&] { servidor->aceptar(); };
    servidor->escuchar("127.0.0.1", 0);
    const auto cliente = bucle.crearZocalo(callado, 1);
    const std::string mucho(24U << 20, 'x');
    cliente->limitarCola(mucho.size());
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] { return servidor->estado() == EstadoZocalo::Conectado; });
    ASSERT_TRUE(cliente->enviar(bytes(mucho)));
    ASSERT_GT(cliente->enCola(), 0U) << "the kernel takes less at once";
    cliente->enviar(bytes("fin"));
    atenderHasta(bucle, [&] { return oyente.datos.ends_with("fin"); });
    EXPECT_EQ(oyente.datos.size(), mucho.size() + 3);
}

TEST(BucleEpoll, LaNoticiaDeUnZocaloCerradoNoEsParaElQueTomaSuLugar) {
    // Nobody takes anything from this port's queue, so a connection to it stays half made.
    const int sordo = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in direccion{};
    direccion.sin_family = AF_INET;
    direccion.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t largo = sizeof direccion;
    auto* const generica = reinterpret_cast<sockaddr*>(&direccion); // NOLINT
    ASSERT_EQ(bind(sordo, generica, largo), 0);
    ASSERT_EQ(listen(sordo, 0), 0);
    ASSERT_EQ(getsockname(sordo, generica, &largo), 0);
    std::vector<int> cola;
    for (int k = 0; k < 4; ++k) {
        cola.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
        (void)connect(cola.back(), generica, largo);
    }

    BucleEpoll bucle;
    Oyente oyente, otro, deServidor;
    const auto servidor = bucle.crearZocalo(deServidor, 0);
    std::vector<std::unique_ptr<Zocalo>> suyos;
    deServidor.alPedir = [&] { suyos.push_back(servidor->aceptarAparte(deServidor, 9)); };
    servidor->escuchar("127.0.0.1", 0);
    const auto uno = bucle.crearZocalo(oyente, 1);
    const auto dos = bucle.crearZocalo(otro, 2);
    uno->conectar("127.0.0.1", servidor->puertoLocal());
    dos->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] {
        return suyos.size() == 2 && uno->estado() == EstadoZocalo::Conectado &&
               dos->estado() == EstadoZocalo::Conectado;
    });
    const auto reemplazar = [&](Zocalo& cual) {
        if (oyente.datos.size() + otro.datos.size() > 1) return;
        cual.cerrar();
        cual.conectar("127.0.0.1", ntohs(direccion.sin_port));
    };
    oyente.alLlegar = [&](std::size_t, const std::string&) { reemplazar(*dos); };
    otro.alLlegar = [&](std::size_t, const std::string&) { reemplazar(*uno); };
    for (const auto& z : suyos)
        z->enviar(bytes("x"));
    atenderHasta(bucle, [&] { return !oyente.datos.empty() || !otro.datos.empty(); });
    EXPECT_EQ(oyente.datos.size() + otro.datos.size(), 1U);
    const Zocalo& nuevo = oyente.datos.empty() ? *uno : *dos;
    EXPECT_EQ(nuevo.estado(), EstadoZocalo::Conectando);
    for (const int d : cola)
        close(d);
    close(sordo);
}

TEST(BucleEpoll, LosEnviosAgrupadosSalenAlFinalDeLaVuelta) {
    BucleEpoll bucle;
    Oyente del, delOtro;
    const auto servidor = bucle.crearZocalo(delOtro, 0);
    int llegadas = 0;
    delOtro.alPedir = [&] { servidor->aceptar(); };
    delOtro.alLlegar = [&](std::size_t, const std::string&) { ++llegadas; };
    servidor->escuchar("127.0.0.1", 0);
    const auto cliente = bucle.crearZocalo(del, 0);
    cliente->agruparEnvios(true);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] { return cliente->estado() == EstadoZocalo::Conectado; });
    for (int i = 0; i < 1000; ++i)
        cliente->enviar(bytes("abc"));
    EXPECT_EQ(cliente->enCola(), 3000U);
    atenderHasta(bucle, [&] { return delOtro.datos.size() == 3000; });
    EXPECT_LE(llegadas, 2);
}

TEST(BucleEpoll, LaRedNoEsperaPorTodosLosTiemposQueVencenJuntos) {
    constexpr std::size_t kTimers = 500;
    BucleEpoll bucle;
    Oyente del, delOtro;
    const auto servidor = bucle.crearZocalo(delOtro, 0);
    const auto cliente = bucle.crearZocalo(del, 0);
    std::size_t tics = 0, ticsAlLlegar = 0;
    std::vector<std::unique_ptr<Temporizador>> ts;
    const auto tic = [&](std::size_t i) {
        ts[i]->habilitar(false);
        if (++tics == 1) cliente->enviar(bytes("hola"));
        const std::int64_t hasta = bucle.reloj().monotonicoUs() + 200;
        while (bucle.reloj().monotonicoUs() < hasta) {
        }
    };
    delOtro.alLlegar = [&](std::size_t, const std::string&) { ticsAlLlegar = tics; };
    delOtro.alPedir = [&] {
        servidor->aceptar();
        for (std::size_t i = 0; i < kTimers; ++i) {
            ts.push_back(bucle.crearTemporizador([&tic, i] { tic(i); }));
            ts.back()->rearmar(20);
        }
    };
    servidor->escuchar("127.0.0.1", 0);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] { return tics == kTimers && ticsAlLlegar > 0; });
    EXPECT_LT(ticsAlLlegar, kTimers);
}

// A long piece of work that yields and never looks at the clock itself.
TEST(BucleEpoll, QuienCedeSinMirarElRelojDejaPasarLaRedYLosTiempos) {
    BucleEpoll bucle;
    Oyente del, delOtro;
    const auto servidor = bucle.crearZocalo(delOtro, 0);
    delOtro.alPedir = [&] { servidor->aceptar(); };
    servidor->escuchar("127.0.0.1", 0);
    const auto cliente = bucle.crearZocalo(del, 0);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] { return servidor->estado() == EstadoZocalo::Conectado; });
    bool tico = false;
    const auto otro = bucle.crearTemporizador([&] { tico = true; });
    const auto trabajo = bucle.crearTemporizador([&] {
        otro->rearmar(2);
        servidor->enviar(bytes("x"));
        for (int i = 0; i < 20'000'000 && (!tico || del.datos.empty()); ++i)
            bucle.dejarCorrerPendientes();
        EXPECT_TRUE(tico);
        EXPECT_EQ(del.datos, "x");
        bucle.detener();
    });
    trabajo->tocarUnaVez();
    trabajo->rearmar(1);
    bucle.correr();
}

// A program may be told to end while it is still being built.
TEST(BucleEpoll, QuienSeDetieneAntesDeCorrerNoCorre) {
    BucleEpoll bucle;
    bool corrio = false;
    const auto tic = bucle.crearTemporizador([&] {
        corrio = true;
        bucle.detener();
    });
    tic->rearmar(1);
    bucle.detener();
    bucle.correr();
    EXPECT_FALSE(corrio);
    bucle.correr();
    EXPECT_TRUE(corrio) << "the next one does";
}

TEST(BucleEpoll, QuienDestruyeAlQueEscuchaEnUnPedidoNoDejaAlOtroColgado) {
    BucleEpoll bucle;
    Oyente del, delOtro;
    auto servidor = bucle.crearZocalo(delOtro, 0);
    delOtro.alPedir = [&] { servidor.reset(); };
    servidor->escuchar("127.0.0.1", 0);
    const auto cliente = bucle.crearZocalo(del, 0);
    cliente->conectar("127.0.0.1", servidor->puertoLocal());
    atenderHasta(bucle, [&] {
        return cliente->estado() == EstadoZocalo::CerradoPorElOtro ||
               cliente->estado() == EstadoZocalo::Error;
    });
    EXPECT_EQ(servidor, nullptr);
}

TEST(BucleEpoll, TrasUnaFallaElBucleDeAfueraVuelveALlamar) {
    BucleEpoll bucle;
    int tics = 0, fallas = 0;
    bool despues = false;
    const auto t = bucle.crearTemporizador([&] {
        if (++tics == 1) throw std::runtime_error("falla");
    });
    t->rearmar(1);
    bucle.despuesDeEstaVuelta([] { throw std::runtime_error("falla"); });
    bucle.despuesDeEstaVuelta([&] { despues = true; });
    while (tics < 3) {
        try {
            bucle.atender();
        } catch (const std::runtime_error&) {
            ++fallas;
        }
        esperar(bucle);
    }
    EXPECT_EQ(fallas, 2);
    EXPECT_TRUE(despues);
}

TEST(Bucles, LasLlegadasVanAntesQueLosTiemposVencidosTrasUnaParada) {
    BucleSimulado bucle;
    Oyente oyente;
    class Eco final : public ExtremoSimulado {
      public:
        explicit Eco(RedSimulada& r) : red(r) {}
        void alRecibir(IdEnlace e, std::span<const std::uint8_t> b) override { red.enviar(e, b); }
        RedSimulada& red;
    } eco(bucle.red());
    bucle.red().atender("10.0.0.1", 502, eco);
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar("10.0.0.1", 502);
    bucle.avanzar(10);
    ASSERT_EQ(z->estado(), EstadoZocalo::Conectado);
    std::string orden;
    oyente.alLlegar = [&](std::size_t, const std::string&) { orden += "llegada "; };
    const auto t = bucle.crearTemporizador([&] { orden += "tiempo "; });
    t->rearmar(5);
    z->enviar(bytes("hola"));
    bucle.avanzarUs(250); // the answer is on its way back
    bucle.demorar(1000);
    bucle.avanzar(0);
    EXPECT_EQ(orden, "llegada tiempo ");
}

TEST(Bucles, DejarCorrerAnidaUnaVezYNoMas) {
    BucleSimulado bucle;
    std::string orden;
    int hondo = 0;
    std::vector<std::unique_ptr<Temporizador>> ts;
    for (int i = 0; i < 4; ++i) {
        ts.push_back(bucle.crearTemporizador([&, i] {
            ts[static_cast<std::size_t>(i)]->habilitar(false);
            orden += "(" + std::to_string(i);
            EXPECT_LT(++hondo, 3);
            bucle.dejarCorrerPendientes();
            --hondo;
            orden += ")";
        }));
        ts.back()->rearmar(10);
    }
    bucle.avanzar(10);
    EXPECT_EQ(orden, "(0(1)(2)(3))");
}

TEST(Bucles, TrasUnaFallaAnidadaSeAnidaDeNuevo) {
    BucleSimulado bucle;
    std::string orden;
    const auto adentro = bucle.crearTemporizador([&] {
        orden += "x";
        if (orden.size() == 2) throw std::runtime_error("falla");
    });
    const auto afuera = bucle.crearTemporizador([&] {
        orden += "(";
        try {
            bucle.dejarCorrerPendientes();
        } catch (const std::runtime_error&) {
            orden += "!";
        }
        orden += ")";
    });
    afuera->rearmar(10);
    adentro->rearmar(10);
    bucle.avanzar(20);
    EXPECT_EQ(orden, "(x!)(x)");
}

TEST(RedSimulada, UnEnlaceInterrumpidoGuardaYEntregaAlVolver) {
    BucleSimulado bucle;
    Oyente oyente;
    class Otro final : public ExtremoSimulado {
      public:
        void alConectar(IdEnlace e) override { enlace = e; }
        void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> b) override {
            datos.append(b.begin(), b.end());
        }
        IdEnlace enlace = 0;
        std::string datos;
    } otro;
    bucle.red().atender("10.0.0.1", 502, otro);
    const auto z = bucle.crearZocalo(oyente, 0);
    z->conectar("10.0.0.1", 502);
    bucle.avanzar(10);
    bucle.red().interrumpir(otro.enlace);
    z->enviar(bytes("uno"));
    bucle.red().enviar(otro.enlace, bytes("x"));
    bucle.avanzar(60'000);
    z->enviar(bytes("dos"));
    bucle.avanzar(1000);
    EXPECT_EQ(otro.datos + oyente.datos, "");
    bucle.red().enviar(otro.enlace, bytes("y"));
    bucle.avanzarUs(150); // the last bytes are about to arrive
    bucle.red().reanudar(otro.enlace);
    bucle.avanzar(10);
    EXPECT_EQ(otro.datos, "unodos");
    EXPECT_EQ(oyente.datos, "xy");
    bucle.red().rechazar("10.0.0.1", 502);
    z->conectar("10.0.0.1", 502);
    bucle.avanzar(10);
    EXPECT_EQ(z->estado(), EstadoZocalo::Error);
}

} // namespace kv
