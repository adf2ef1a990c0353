// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/resolutor.h"

#include "platform/motivo_de_enlace.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <mutex>
#include <netdb.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace kv {

struct Resolutor::Comun {
    explicit Comun(ConsultaDeNombre c)
        : consulta(std::move(c)), aviso(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
        if (aviso < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    ~Comun() { close(aviso); }
    Comun(const Comun&) = delete;
    Comun& operator=(const Comun&) = delete;

    void avisar() const {
        const std::uint64_t uno = 1;
        [[maybe_unused]] const auto n = write(aviso, &uno, sizeof uno);
    }

    const ConsultaDeNombre consulta;
    const int aviso;
    std::mutex cerrojo; ///< for all that follows
    std::deque<std::string> pedidos;
    std::vector<std::pair<std::string, NombreResuelto>> hechos;
    int hilos = 0;
    bool abandonado = false;
};

Resolutor::Resolutor(BucleEpoll& bucle, ConsultaDeNombre consulta)
    : bucle_(bucle), comun_(std::make_shared<Comun>(std::move(consulta))),
      registro_(bucle.registrar(comun_->aviso, EPOLLIN, *this)) {
    if (registro_ == BucleEpoll::kNoRegistrado)
        throw std::system_error(errno, std::generic_category(), "epoll_ctl");
}

Resolutor::~Resolutor() {
    bucle_.olvidar(registro_, comun_->aviso);
    const std::lock_guard turno(comun_->cerrojo);
    comun_->abandonado = true;
}

bool Resolutor::pedir(const std::string& nombre, AlResolver& quien) {
    if (const auto e = esperan_.find(nombre); e != esperan_.end()) {
        e->second.push_back(&quien);
        return true;
    }
    if (esperan_.size() >= kNombres) return false;
    const std::lock_guard turno(comun_->cerrojo);
    if (!empezarHilo()) return false;
    comun_->pedidos.push_back(nombre); // it waits for the lock to look
    esperan_[nombre].push_back(&quien);
    return true;
}

void Resolutor::olvidar(const std::string& nombre, const AlResolver& quien) {
    // The name keeps its place: who asks for it again and again does not begin at the end each
    // time.
    if (const auto e = esperan_.find(nombre); e != esperan_.end()) std::erase(e->second, &quien);
    for (auto& [cual, resuelto] : porAvisar_) {
        if (cual == &quien) cual = nullptr;
    }
}

/// Starts one more thread, if there may be more. False when not a single one runs. Holds the lock.
bool Resolutor::empezarHilo() {
    if (comun_->hilos == kHilos) return true;
    sigset_t todas;
    sigset_t antes;
    sigfillset(&todas);
    pthread_sigmask(SIG_BLOCK, &todas, &antes); // signals are the loop's
    try {
        std::thread(trabajar, comun_).detach();
        ++comun_->hilos;
    } catch (const std::system_error&) { // the others will do
    }
    pthread_sigmask(SIG_SETMASK, &antes, nullptr);
    return comun_->hilos > 0;
}

void Resolutor::trabajar(const std::shared_ptr<Comun>& comun) {
    std::unique_lock turno(comun->cerrojo);
    while (!comun->abandonado && !comun->pedidos.empty()) {
        std::string nombre = std::move(comun->pedidos.front());
        comun->pedidos.pop_front();
        turno.unlock();
        NombreResuelto resuelto;
        try {
            resuelto = comun->consulta(nombre);
        } catch (const std::exception& falla) {
            resuelto.motivo = falla.what();
        }
        turno.lock();
        comun->hechos.emplace_back(std::move(nombre), std::move(resuelto));
        comun->avisar();
    }
    --comun->hilos;
}

void Resolutor::alOcurrir(std::uint32_t /*sucesos*/) {
    std::uint64_t veces = 0;
    [[maybe_unused]] const auto n = read(comun_->aviso, &veces, sizeof veces);
    std::vector<std::pair<std::string, NombreResuelto>> hechos;
    {
        const std::lock_guard turno(comun_->cerrojo);
        hechos.swap(comun_->hechos);
    }
    for (auto& [nombre, resuelto] : hechos) {
        const auto r = std::make_shared<const NombreResuelto>(std::move(resuelto));
        const auto e = esperan_.extract(nombre);
        for (AlResolver* quien : e.mapped())
            porAvisar_.emplace_back(quien, r);
    }
    repartir();
}

/// Whoever is called may ask again, go away, or let events run, which brings the next ones here.
void Resolutor::repartir() {
    try {
        while (!porAvisar_.empty()) {
            const auto [quien, resuelto] = porAvisar_.front();
            porAvisar_.pop_front();
            if (quien != nullptr) quien->alResolver(*resuelto);
        }
    } catch (...) {
        comun_->avisar(); // for the others
        throw;
    }
}

NombreResuelto resolverConElSistema(const std::string& nombre) {
    NombreResuelto r;
    addrinfo pedido{};
    pedido.ai_socktype = SOCK_STREAM;
    addrinfo* lista = nullptr;
    const int error = getaddrinfo(nombre.c_str(), nullptr, &pedido, &lista);
    if (error != 0) {
        r.motivo = error == EAI_NONAME  ? enPalabras(Motivo::NombreDesconocido, nombre)
                   : error == EAI_AGAIN ? enPalabras(Motivo::NombreSinAveriguar, nombre)
                                        : nombre + ": " + gai_strerror(error);
        return r;
    }
    for (const addrinfo* a = lista; a != nullptr; a = a->ai_next) {
        Maquina m{};
        std::memcpy(&m, a->ai_addr, std::min<std::size_t>(a->ai_addrlen, sizeof m));
        r.maquinas.push_back(m);
    }
    freeaddrinfo(lista);
    return r;
}

} // namespace kv
