// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/cable_local.h"

#include "platform/epoll/archivo_de_zocalo.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kRenglonMaximo = std::size_t{1} << 24;

} // namespace

CableLocal::CableLocal(const std::string& ruta)
    : d_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    ArchivoDeZocalo archivo(ruta);
    if (d_ >= 0 && archivo.conectar(d_)) return;
    const int error = errno;
    if (d_ >= 0) close(d_);
    const bool nadie = error == ENOENT || error == ECONNREFUSED;
    throw FallaDeCable{nadie             ? "no corre un driver que atienda en " + ruta
                       : error == EACCES ? "sin permiso para usar " + ruta
                                         : ruta + ": " + std::generic_category().message(error)};
}

CableLocal::~CableLocal() { close(d_); }

void CableLocal::enviar(std::string renglon) const {
    renglon += '\n';
    for (std::size_t n = 0; n < renglon.size();) {
        const ssize_t k = send(d_, renglon.data() + n, renglon.size() - n, MSG_NOSIGNAL);
        if (k < 0 && errno != EINTR) throw FallaDeCable{"el driver cerró la conexión"};
        n += k > 0 ? static_cast<std::size_t>(k) : 0;
    }
}

bool CableLocal::renglon(std::string& destino, double segundos) {
    using Reloj = std::chrono::steady_clock;
    const auto fin = Reloj::now() + std::chrono::duration<double>(std::max(segundos, 0.0));
    for (;;) {
        const std::size_t n = recibido_.find('\n', visto_);
        if (n != std::string::npos) {
            destino = recibido_.substr(desde_, n - desde_);
            visto_ = desde_ = n + 1;
            return true;
        }
        visto_ = recibido_.size();
        if (visto_ - desde_ > kRenglonMaximo) throw FallaDeCable{"el driver dice algo sin fin"};
        const double quedan = std::chrono::duration<double>(fin - Reloj::now()).count();
        pollfd p{d_, POLLIN, 0};
        const int listo =
            poll(&p, 1, segundos < 0 ? -1 : std::max(0, static_cast<int>(quedan * 1000)));
        if (listo == 0) return false;
        if (listo > 0) recibir();
    }
}

void CableLocal::recibir() {
    recibido_.erase(0, desde_);
    visto_ -= desde_;
    desde_ = 0;
    std::array<char, 65536> trozo{};
    const ssize_t n = recv(d_, trozo.data(), trozo.size(), 0);
    if (n == 0 || (n < 0 && errno != EINTR)) throw FallaDeCable{"el driver cerró la conexión"};
    recibido_.append(trozo.data(), n > 0 ? static_cast<std::size_t>(n) : 0);
}

} // namespace kv
