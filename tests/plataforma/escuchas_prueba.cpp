// SPDX-License-Identifier: Apache-2.0
// Ports that are kept while nobody is let in, and sockets that only this machine can reach.

#include "apoyo/puerto_libre.h"
#include "plataforma/apoyo.h"

#include "platform/epoll/archivo_de_zocalo.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

/// Another program's attempt to listen on a port; 0 or why it cannot.
int ocupar(std::uint32_t puerto, in_addr_t donde, bool compartido) {
    const int d = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int si = compartido ? 1 : 0;
    setsockopt(d, SOL_SOCKET, SO_REUSEADDR, &si, sizeof si);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(donde);
    a.sin_port = htons(static_cast<std::uint16_t>(puerto));
    const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
    const bool bien = bind(d, generica, sizeof a) == 0 && listen(d, 1) == 0;
    const int error = bien ? 0 : errno;
    close(d);
    return error;
}

class Local : public testing::Test {
  protected:
    Local() {
        std::filesystem::create_directories(carpeta);
        oyente.alPedir = [this] { suyos.push_back(servidor->aceptarAparte(oyente, 7)); };
    }
    ~Local() override {
        servidor.reset();
        std::filesystem::remove_all(carpeta);
    }
    /// Connects as another program does; its descriptor, or -1.
    [[nodiscard]] int llamar() const {
        const int d = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ArchivoDeZocalo archivo(ruta);
        if (archivo.conectar(d)) return d;
        close(d);
        return -1;
    }
    [[nodiscard]] unsigned modo() const {
        struct stat que {};
        return lstat(ruta.c_str(), &que) == 0 ? que.st_mode & 0777U : 0;
    }
    BucleEpoll bucle;
    Oyente oyente;
    std::vector<std::unique_ptr<Zocalo>> suyos;
    std::string carpeta = testing::TempDir() + "escuchas." + std::to_string(getpid());
    std::string ruta = carpeta + "/planta.sock";
    std::unique_ptr<Zocalo> servidor = bucle.crearZocalo(oyente, 0);
};

} // namespace

TEST(PuertoReservado, NadieEntraNadieLoTomaYSeVuelveAEscuchar) {
    BucleEpoll bucle;
    Oyente deServidor, deCliente, deOtro;
    const auto servidor = bucle.crearZocalo(deServidor, 0);
    std::vector<std::unique_ptr<Zocalo>> suyos;
    deServidor.alPedir = [&] { suyos.push_back(servidor->aceptarAparte(deServidor, 9)); };
    const std::uint32_t puerto = puertoLibre();
    servidor->escuchar("127.0.0.1", puerto);
    const auto cliente = bucle.crearZocalo(deCliente, 1);
    cliente->conectar("127.0.0.1", puerto);
    atenderHasta(bucle, [&] { return !suyos.empty(); });
    servidor->reservar();
    EXPECT_EQ(servidor->estado(), EstadoZocalo::Cerrado);
    for (const bool compartido : {false, true}) {
        EXPECT_EQ(ocupar(puerto, INADDR_LOOPBACK, compartido), EADDRINUSE);
        EXPECT_EQ(ocupar(puerto, INADDR_ANY, compartido), EADDRINUSE);
    }
    const auto otro = bucle.crearZocalo(deOtro, 2);
    otro->conectar("127.0.0.1", puerto);
    atenderHasta(bucle, [&] { return otro->estado() == EstadoZocalo::Error; });
    EXPECT_EQ(otro->motivo(), "rechaza la conexion (nadie atiende ese puerto)")
        << "as where nobody listens";
    cliente->enviar(bytes("sigue"));
    atenderHasta(bucle, [&] { return deServidor.datos == "sigue"; });
    for (int vez = 0; vez < 2; ++vez) {
        servidor->escuchar("127.0.0.1", puerto);
        ASSERT_EQ(servidor->estado(), EstadoZocalo::Escuchando) << servidor->motivo();
        otro->conectar("127.0.0.1", puerto);
        atenderHasta(bucle, [&] { return suyos.size() == 2U + static_cast<std::size_t>(vez); });
        servidor->reservar();
    }
    servidor->cerrar();
    suyos.clear();
    EXPECT_EQ(ocupar(puerto, INADDR_LOOPBACK, true), 0) << "closed it is anybody's";
}

TEST_F(Local, ElArchivoEsDeSuDuenoYSeSabeQuienLlama) {
    servidor->escucharLocal(ruta, -1);
    ASSERT_EQ(servidor->estado(), EstadoZocalo::Escuchando) << servidor->motivo();
    EXPECT_EQ(modo(), 0600U);
    const int d = llamar();
    ASSERT_GE(d, 0);
    atenderHasta(bucle, [&] { return !suyos.empty(); });
    EXPECT_EQ(oyente.remoto, std::to_string(getuid()) + "/" + std::to_string(getpid()));
    ASSERT_EQ(write(d, "hola", 4), 4);
    atenderHasta(bucle, [&] { return oyente.datos == "hola"; });
    suyos.front()->enviar(bytes("que tal"));
    std::array<char, 8> leido{};
    EXPECT_EQ(read(d, leido.data(), leido.size()), 7);
    close(d);
    servidor->cerrar();
    EXPECT_EQ(modo(), 0U) << "the file goes with it";
    EXPECT_LT(llamar(), 0);
}

TEST_F(Local, UnArchivoQueQuedoSeReemplazaYUnoAjenoNo) {
    {
        const int muerto = socket(AF_UNIX, SOCK_STREAM, 0);
        ArchivoDeZocalo archivo(ruta);
        ASSERT_TRUE(archivo.atar(muerto));
        close(muerto); // as a driver that was killed leaves it
    }
    servidor->escucharLocal(ruta, getgid());
    ASSERT_EQ(servidor->estado(), EstadoZocalo::Escuchando) << servidor->motivo();
    EXPECT_EQ(modo(), 0660U);
    servidor->cerrar();
    std::ofstream(ruta) << "datos de alguien";
    servidor->escucharLocal(ruta, -1);
    EXPECT_EQ(servidor->estado(), EstadoZocalo::Error);
    EXPECT_EQ(std::filesystem::file_size(ruta), 16U);
}

TEST_F(Local, UnaRutaLargaTambienSirve) {
    carpeta += "/" + std::string(120, 'c');
    std::filesystem::create_directories(carpeta);
    ruta = carpeta + "/planta.sock";
    servidor->escucharLocal(ruta, -1);
    ASSERT_EQ(servidor->estado(), EstadoZocalo::Escuchando) << servidor->motivo();
    EXPECT_EQ(modo(), 0600U);
    const int d = llamar();
    EXPECT_GE(d, 0);
    close(d);
    carpeta.resize(carpeta.rfind('/'));
}

TEST(RedSimulada, UnPuertoReservadoRechazaYNadieMasLoTiene) {
    BucleSimulado bucle;
    Oyente deServidor, deOtro;
    const auto servidor = bucle.crearZocalo(deServidor, 0);
    const auto otro = bucle.crearZocalo(deOtro, 1);
    servidor->escuchar("", 1334);
    servidor->reservar();
    otro->escuchar("", 1334);
    EXPECT_EQ(otro->estado(), EstadoZocalo::Error);
    servidor->escuchar("", 1334);
    EXPECT_EQ(servidor->estado(), EstadoZocalo::Escuchando);
    servidor->reservar();
    servidor->cerrar();
    otro->escuchar("", 1334);
    EXPECT_EQ(otro->estado(), EstadoZocalo::Escuchando);
}

} // namespace kv
