// SPDX-License-Identifier: Apache-2.0
#include "estaciones_de_banco.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <map>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <numeric>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kv::banco {
namespace {

double ahoraMs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

/// The stations' process: one epoll, no more.
class Hijo {
  public:
    Hijo(int escucha, int ordenes, int informes)
        : escucha_(escucha), ordenes_(ordenes), informes_(informes), epoll_(epoll_create1(0)) {
        vigilar(escucha_);
        vigilar(ordenes_);
    }
    [[noreturn]] void correr() {
        std::array<epoll_event, 512> sucesos; // NOLINT: filled by the kernel
        for (;;) {
            const int espera = velan_ ? 0 : demorados_.empty() ? -1 : 1;
            const int n = epoll_wait(epoll_, sucesos.data(), sucesos.size(), espera);
            for (; !demorados_.empty() && demorados_.begin()->first <= ahoraMs();
                 demorados_.erase(demorados_.begin()))
                responder(demorados_.begin()->second);
            for (int i = 0; i < n; ++i) {
                const int d = sucesos[static_cast<std::size_t>(i)].data.fd;
                if (d == escucha_) {
                    aceptar();
                } else if (d == ordenes_) {
                    obedecer();
                } else {
                    contestar(d);
                }
            }
        }
    }

  private:
    void vigilar(int d) const {
        epoll_event e{};
        e.events = EPOLLIN;
        e.data.fd = d;
        epoll_ctl(epoll_, EPOLL_CTL_ADD, d, &e);
    }
    void aceptar() {
        const int d = accept4(escucha_, nullptr, nullptr, SOCK_NONBLOCK);
        if (d < 0) return;
        const int si = 1;
        setsockopt(d, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        vigilar(d);
    }
    void contestar(int d) {
        std::array<std::uint8_t, 7> pedido; // NOLINT: filled by recv
        const ssize_t n = recv(d, pedido.data(), pedido.size(), 0);
        if (n <= 0) {
            close(d);
            ultimos_.erase(d);
            return;
        }
        pedidos_[d] = pedido;
        const double ahora = ahoraMs();
        const auto [ultimo, nuevo] = ultimos_.try_emplace(d, 0);
        if (!velan_ && !nuevo && ultimo->second > 0) atrasos_.push_back(ahora - ultimo->second);
        if (repartir_ > 0 && repartidos_.insert(d).second) {
            // One answer of each link comes late, by another time: from then on they are spread.
            demorados_.emplace(ahora + std::fmod(d * 0.618, 1.0) * repartir_, d);
            return;
        }
        responder(d);
    }
    void responder(int d) {
        const auto& pedido = pedidos_[d];
        // A write is answered with what was written, a read with another value each time.
        const unsigned valor = pedido[0] == 'W' ? pedido[4] * 256U + pedido[5] : ++valor_;
        std::array<std::uint8_t, 8> r{7,
                                      pedido[1],
                                      0,
                                      pedido[3],
                                      0,
                                      static_cast<std::uint8_t>(valor >> 8 & 0x7F),
                                      static_cast<std::uint8_t>(valor),
                                      0};
        r[7] = static_cast<std::uint8_t>(std::accumulate(r.begin() + 1, r.end() - 1, 0));
        // Stamped before the send: the driver may have the answer before this process goes on.
        ultimos_[d] = ahoraMs();
        send(d, r.data(), r.size(), MSG_NOSIGNAL);
    }
    void obedecer() {
        char orden = 0;
        if (read(ordenes_, &orden, 1) != 1) _exit(0);
        if (orden == 'v') {
            velan_ = true;
            return;
        }
        if (orden == 'r') {
            if (read(ordenes_, &repartir_, sizeof repartir_) != sizeof repartir_) _exit(1);
            return;
        }
        if (orden == 'o') {
            atrasos_.clear();
            return;
        }
        Atrasos a{0, 0, 0, 0, atrasos_.size()};
        if (!atrasos_.empty()) {
            std::sort(atrasos_.begin(), atrasos_.end());
            a.minimoMs = atrasos_.front();
            a.p50Ms = atrasos_[atrasos_.size() / 2];
            a.p99Ms = atrasos_[atrasos_.size() * 99 / 100];
            a.maximoMs = atrasos_.back();
        }
        if (write(informes_, &a, sizeof a) != sizeof a) _exit(1);
    }

    int escucha_, ordenes_, informes_, epoll_;
    std::unordered_map<int, double> ultimos_;
    std::unordered_map<int, std::array<std::uint8_t, 7>> pedidos_;
    std::unordered_set<int> repartidos_;
    std::multimap<double, int> demorados_;
    bool velan_ = false;
    double repartir_ = 0; ///< ms over which the links are spread, 0: not
    std::vector<double> atrasos_;
    unsigned valor_ = 0;
};

} // namespace

EstacionesDeBanco::EstacionesDeBanco() {
    const int escucha = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_ANY);
    socklen_t largo = sizeof a;
    auto* generica = reinterpret_cast<sockaddr*>(&a); // NOLINT
    if (bind(escucha, generica, sizeof a) != 0 || listen(escucha, 4096) != 0) std::abort();
    getsockname(escucha, generica, &largo);
    puerto_ = ntohs(a.sin_port);
    std::array<int, 2> haciaHijo{}, desdeHijo{};
    if (pipe(haciaHijo.data()) != 0 || pipe(desdeHijo.data()) != 0) std::abort();
    hijo_ = fork();
    if (hijo_ == 0) {
        close(haciaHijo[1]);
        close(desdeHijo[0]);
        Hijo(escucha, haciaHijo[0], desdeHijo[1]).correr();
    }
    close(escucha);
    close(haciaHijo[0]);
    close(desdeHijo[1]);
    ordenes_ = haciaHijo[1];
    informes_ = desdeHijo[0];
}

EstacionesDeBanco::~EstacionesDeBanco() {
    close(ordenes_); // the child ends when nobody can give orders any more
    waitpid(hijo_, nullptr, 0);
    close(informes_);
}

void EstacionesDeBanco::olvidar() const {
    if (write(ordenes_, "o", 1) != 1) std::abort();
}

void EstacionesDeBanco::repartir(double ms) const {
    if (write(ordenes_, "r", 1) != 1 || write(ordenes_, &ms, sizeof ms) != sizeof ms) std::abort();
}

void EstacionesDeBanco::velar() const {
    if (write(ordenes_, "v", 1) != 1) std::abort();
}

Atrasos EstacionesDeBanco::atrasos() const {
    Atrasos a{};
    if (write(ordenes_, "i", 1) != 1 || read(informes_, &a, sizeof a) != sizeof a) std::abort();
    return a;
}

Procesador tiempoDeProcesador() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    const auto s = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return {s(u.ru_utime) + s(u.ru_stime), s(u.ru_utime)};
}

void permitirMuchosArchivos() {
    rlimit r{};
    getrlimit(RLIMIT_NOFILE, &r);
    r.rlim_cur = r.rlim_max;
    setrlimit(RLIMIT_NOFILE, &r);
}

} // namespace kv::banco
