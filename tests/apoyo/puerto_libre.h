// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>

namespace kv {

/// A TCP port that nobody listens on, this test's own until its program ends: the same port of UDP
/// is kept as the sign of it, for the tests that run beside this one. It lies below those that
/// systems give to outgoing connections, one of which would keep a program from listening.
inline std::uint16_t puertoLibre() {
    constexpr std::uint16_t kPrimero = 12000, kCuantos = 18000;
    static std::uint16_t siguiente = static_cast<std::uint16_t>(getpid() * 37 % kCuantos);
    for (int veces = 0; veces < kCuantos; ++veces) {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(static_cast<std::uint16_t>(kPrimero + siguiente));
        siguiente = static_cast<std::uint16_t>((siguiente + 1) % kCuantos);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        const int senal = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (bind(senal, generica, sizeof a) != 0) {
            close(senal);
            continue;
        }
        const int prueba = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool libre = bind(prueba, generica, sizeof a) == 0;
        close(prueba);
        if (libre) return ntohs(a.sin_port);
        close(senal);
    }
    throw std::runtime_error("no free port");
}

} // namespace kv
