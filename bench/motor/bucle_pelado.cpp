// SPDX-License-Identifier: Apache-2.0
#include "bucle_pelado.h"

#include "estaciones_de_banco.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <array>
#include <ctime>
#include <deque>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace kv::banco {
namespace {

double ahora() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

class Bucle {
  public:
    Bucle(std::uint16_t puerto, int conexiones, double pausaMs)
        : pausa_(pausaMs / 1000), epoll_(epoll_create1(0)) {
        trama_ = *armarTramaLectura("10", "1");
        for (int i = 0; i < conexiones; ++i)
            conectar(puerto, i);
    }
    ~Bucle() {
        for (const int d : zocalos_)
            close(d);
        close(epoll_);
    }
    Bucle(const Bucle&) = delete;
    Bucle& operator=(const Bucle&) = delete;

    void correr(double segundos) {
        const double fin = ahora() + segundos;
        std::array<epoll_event, 256> sucesos; // NOLINT: filled by the kernel
        double t = 0;
        while ((t = ahora()) < fin) {
            int espera = 100;
            if (!porEnviar_.empty())
                espera = std::max(0, static_cast<int>((porEnviar_.front().cuando - t) * 1000 + 1));
            const int n = epoll_wait(epoll_, sucesos.data(), sucesos.size(), std::min(espera, 100));
            for (int i = 0; i < n; ++i)
                recibir(sucesos[static_cast<std::size_t>(i)].data.u32);
            for (t = ahora(); !porEnviar_.empty() && porEnviar_.front().cuando <= t;
                 porEnviar_.pop_front())
                pedir(porEnviar_.front().cual);
        }
    }
    void empezar(bool repartido) {
        for (std::uint32_t i = 0; i < zocalos_.size(); ++i) {
            if (repartido) {
                porEnviar_.push_back(
                    {ahora() + pausa_ * i / static_cast<double>(zocalos_.size()), i});
            } else {
                pedir(i);
            }
        }
    }
    [[nodiscard]] std::uint64_t intercambios() const { return intercambios_; }

  private:
    struct PorEnviar {
        double cuando;
        std::uint32_t cual;
    };
    void conectar(std::uint16_t puerto, int i) {
        const int d = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(puerto);
        a.sin_addr.s_addr = htonl(0x7F010000U + static_cast<unsigned>(i) + 1);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        if (connect(d, generica, sizeof a) != 0) std::abort();
        const int si = 1;
        setsockopt(d, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        epoll_event e{};
        e.events = EPOLLIN;
        e.data.u32 = static_cast<std::uint32_t>(zocalos_.size());
        epoll_ctl(epoll_, EPOLL_CTL_ADD, d, &e);
        zocalos_.push_back(d);
        valores_.push_back(0);
    }
    void pedir(std::uint32_t i) { send(zocalos_[i], trama_.data(), trama_.size(), MSG_NOSIGNAL); }
    void recibir(std::uint32_t i) {
        std::array<std::uint8_t, 64> r; // NOLINT: filled by recv
        const ssize_t n = recv(zocalos_[i], r.data(), r.size(), MSG_DONTWAIT);
        if (n != 8 || !verificarTramaRespuesta(std::span(r).first(8))) return;
        valores_[i] = r[5] * 256 + r[6];
        ++intercambios_;
        if (pausa_ > 0) {
            porEnviar_.push_back({ahora() + pausa_, i});
        } else {
            pedir(i);
        }
    }

    double pausa_;
    int epoll_;
    Solicitud trama_{};
    std::vector<int> zocalos_;
    std::vector<int> valores_;
    std::deque<PorEnviar> porEnviar_;
    std::uint64_t intercambios_ = 0;
};

} // namespace

Medida medirBuclePelado(std::uint16_t puerto, int conexiones, double segundos, double pausaMs) {
    Bucle bucle(puerto, conexiones, pausaMs);
    bucle.empezar(pausaMs > 0);
    bucle.correr(pausaMs > 0 ? 2 : 0.3);
    const Procesador antesCpu = tiempoDeProcesador();
    const std::uint64_t antes = bucle.intercambios();
    bucle.correr(segundos);
    const auto hechos = static_cast<double>(bucle.intercambios() - antes);
    const Procesador cpu = tiempoDeProcesador();
    return {(cpu.total - antesCpu.total) * 1e6 / hechos,
            (cpu.fueraDelNucleo - antesCpu.fueraDelNucleo) * 1e6 / hechos, hechos / segundos};
}

} // namespace kv::banco
