// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/escucha.h"

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace kv::simulador {
namespace {

constexpr int kCola = 4096;
constexpr int kPorSuceso = 64; // links taken before others get their turn

std::string palabras(int error) { return std::generic_category().message(error); }

} // namespace

Escucha::~Escucha() {
    if (descriptor_ >= 0) {
        bucle_.olvidar(registro_, descriptor_);
        close(descriptor_);
    }
    if (reserva_ >= 0) close(reserva_);
}

std::string Escucha::abrir(const std::string& ip, std::uint16_t puerto) {
    sockaddr_in direccion{};
    direccion.sin_family = AF_INET;
    direccion.sin_port = htons(puerto);
    if (inet_pton(AF_INET, ip.c_str(), &direccion.sin_addr) != 1) return "dirección no válida";
    const int d = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (d < 0) return palabras(errno);
    const int si = 1;
    setsockopt(d, SOL_SOCKET, SO_REUSEADDR, &si, sizeof si);
    auto* generica = reinterpret_cast<sockaddr*>(&direccion); // NOLINT
    socklen_t largo = sizeof direccion;
    if (bind(d, generica, largo) != 0 || listen(d, kCola) != 0 ||
        getsockname(d, generica, &largo) != 0) {
        const int error = errno;
        close(d);
        return palabras(error);
    }
    descriptor_ = d;
    puerto_ = ntohs(direccion.sin_port);
    reserva_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
    registro_ = bucle_.registrar(d, EPOLLIN, *this);
    return {};
}

void Escucha::alOcurrir(std::uint32_t /*sucesos*/) {
    for (int i = 0; i < kPorSuceso; ++i) {
        const int d = accept4(descriptor_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (d < 0) {
            if (errno == EMFILE || errno == ENFILE) rechazarUno();
            return;
        }
        const int si = 1;
        setsockopt(d, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        alLlegar_(d);
    }
}

/// Without a descriptor for it a waiting link would wake the loop for ever: it is taken with the
/// one in reserve and closed.
void Escucha::rechazarUno() {
    if (reserva_ >= 0) close(reserva_);
    const int d = accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC);
    if (d >= 0) close(d);
    reserva_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
}

void permitirMuchosDescriptores() {
    rlimit limite{};
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0) return;
    limite.rlim_cur = limite.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limite);
}

} // namespace kv::simulador
