// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/extremos.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <netdb.h>

namespace kv {

std::optional<Maquina> maquinaDe(const std::string& texto) {
    addrinfo pedido{};
    pedido.ai_socktype = SOCK_STREAM;
    pedido.ai_flags = AI_NUMERICHOST;
    addrinfo* lista = nullptr;
    if (getaddrinfo(texto.c_str(), nullptr, &pedido, &lista) != 0) return std::nullopt;
    Maquina m{};
    std::memcpy(&m, lista->ai_addr, std::min<std::size_t>(lista->ai_addrlen, sizeof m));
    freeaddrinfo(lista);
    return m;
}

socklen_t ponerPuerto(Maquina& m, std::uint32_t puerto) {
    const auto enRed = htons(static_cast<std::uint16_t>(puerto));
    if (m.ss_family == AF_INET6) {
        reinterpret_cast<sockaddr_in6&>(m).sin6_port = enRed; // NOLINT
        return sizeof(sockaddr_in6);
    }
    reinterpret_cast<sockaddr_in&>(m).sin_port = enRed; // NOLINT
    return sizeof(sockaddr_in);
}

std::optional<sockaddr_in> lugarParaEscuchar(const std::string& ip, std::uint32_t puerto) {
    sockaddr_in lugar{};
    lugar.sin_family = AF_INET;
    lugar.sin_port = htons(static_cast<std::uint16_t>(puerto));
    if (puerto > 65535 || inet_pton(AF_INET, ip.c_str(), &lugar.sin_addr) != 1) return std::nullopt;
    return lugar;
}

std::string textoDe(const sockaddr_in& direccion) {
    char texto[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &direccion.sin_addr, texto, sizeof texto);
    return std::string(texto) + ":" + std::to_string(ntohs(direccion.sin_port));
}

bool esElMismo(int descriptor) {
    Maquina propia{};
    Maquina otra{};
    socklen_t largo = sizeof propia;
    socklen_t suLargo = sizeof otra;
    return getsockname(descriptor, reinterpret_cast<sockaddr*>(&propia), &largo) == 0 && // NOLINT
           getpeername(descriptor, reinterpret_cast<sockaddr*>(&otra), &suLargo) == 0 && // NOLINT
           largo == suLargo && std::memcmp(&propia, &otra, largo) == 0;
}

std::string quienLlama(int descriptor) {
    ucred otro{};
    socklen_t largo = sizeof otro;
    if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &otro, &largo) != 0) return "?/0";
    return std::to_string(otro.uid) + "/" + std::to_string(otro.pid);
}

} // namespace kv
