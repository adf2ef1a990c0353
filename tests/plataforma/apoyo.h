// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/epoll/bucle_epoll.h"
#include "platform/zocalo.h"

#include <gtest/gtest.h>

#include <functional>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kv {

/// Gathers what a socket reports, and does what a test wants done at an arrival or a request.
class Oyente final : public OyenteDeZocalo {
  public:
    void alConectar(std::size_t /*indice*/) override { suceso += "conectado;"; }
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override {
        const std::string texto(bytes.begin(), bytes.end());
        datos += texto;
        if (alLlegar) alLlegar(indice, texto);
    }
    void alCortarse(std::size_t /*indice*/) override { suceso += "cortado;"; }
    void alPedirConexion(std::size_t /*indice*/, std::string_view quien) override {
        suceso += "pedido;";
        remoto = quien;
        if (alPedir) alPedir();
    }
    std::string datos, suceso, remoto;
    std::function<void(std::size_t, const std::string&)> alLlegar;
    std::function<void()> alPedir;
};

inline std::span<const std::uint8_t> bytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()}; // NOLINT
}

inline void esperar(BucleEpoll& bucle) {
    pollfd p{bucle.descriptor(), POLLIN, 0};
    poll(&p, 1, -1);
}

/// Turns a real loop inside another one until `listo` says so; a test that never gets there fails
/// by its time limit.
template <class F>
void atenderHasta(BucleEpoll& bucle, F listo) {
    for (bucle.atender(); !listo(); bucle.atender())
        esperar(bucle);
}

/// A TCP socket listens on this machine, at a port that the system chooses; gives it.
inline std::uint16_t escucharEnElLazo(int descriptor) {
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generica = reinterpret_cast<sockaddr*>(&a); // NOLINT
    socklen_t largo = sizeof a;
    EXPECT_EQ(bind(descriptor, generica, sizeof a), 0);
    EXPECT_EQ(listen(descriptor, 4), 0);
    EXPECT_EQ(getsockname(descriptor, generica, &largo), 0);
    return ntohs(a.sin_port);
}

/// Puts the cable of such a network into its place or pulls it; it has no other interface than its
/// loop. False where that is not allowed.
inline bool mover(bool puesto) {
    const int d = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq lazo{};
    lazo.ifr_name[0] = 'l';
    lazo.ifr_name[1] = 'o';
    bool bien = ioctl(d, SIOCGIFFLAGS, &lazo) == 0;
    const int flags = puesto ? lazo.ifr_flags | IFF_UP : lazo.ifr_flags & ~IFF_UP;
    lazo.ifr_flags = static_cast<short>(flags);
    bien = bien && ioctl(d, SIOCSIFFLAGS, &lazo) == 0;
    close(d);
    return bien;
}
inline void cable(bool puesto) { EXPECT_TRUE(mover(puesto)); }

/// Runs `escena` in a process whose network is its own, where a cable can be pulled; it ends within
/// a minute, and well only without failed expectations.
inline void enRedPropia(const std::function<void()>& escena) {
    EXPECT_EXIT(
        {
            alarm(60);
            EXPECT_EQ(unshare(CLONE_NEWNET), 0);
            escena();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

/// Who may have a network of his own may not be allowed to switch it on.
inline bool hayRedPropia() {
    const pid_t hijo = fork();
    if (hijo == 0) _exit(unshare(CLONE_NEWNET) == 0 && mover(true) ? 0 : 1);
    int estado = 1;
    waitpid(hijo, &estado, 0);
    return estado == 0;
}

} // namespace kv
