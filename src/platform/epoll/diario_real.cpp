// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/diario_real.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {

DiarioReal::DiarioReal(std::string ruta)
    : ruta_(std::move(ruta)),
      zocalo_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

DiarioReal::~DiarioReal() {
    if (zocalo_ >= 0) close(zocalo_);
}

bool DiarioReal::hay() {
    const char* donde = std::getenv("JOURNAL_STREAM"); // NOLINT: one thread, at the start
    struct stat s {};
    return donde != nullptr && fstat(STDERR_FILENO, &s) == 0 &&
           std::to_string(s.st_dev) + ":" + std::to_string(s.st_ino) == donde;
}

void DiarioReal::anotar(std::span<const CampoDeDiario> campos) {
    std::string mensaje;
    for (const CampoDeDiario& c : campos) {
        if (c.valor.empty()) continue;
        mensaje += c.nombre;
        if (c.valor.find('\n') == std::string_view::npos) {
            mensaje.append("=").append(c.valor);
        } else { // its length goes before, eight bytes, the least first
            mensaje += '\n';
            for (unsigned i = 0; i < 8; ++i)
                mensaje += static_cast<char>(std::uint64_t{c.valor.size()} >> (8 * i) & 0xFFU);
            mensaje += c.valor;
        }
        mensaje += '\n';
    }
    sockaddr_un destino{};
    destino.sun_family = AF_UNIX;
    if (zocalo_ < 0 || ruta_.size() >= sizeof destino.sun_path) return;
    std::copy(ruta_.begin(), ruta_.end(), std::begin(destino.sun_path));
    static_cast<void>(sendto(zocalo_, mensaje.data(), mensaje.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                             reinterpret_cast<const sockaddr*>(&destino), // NOLINT
                             sizeof destino));
}

} // namespace kv
