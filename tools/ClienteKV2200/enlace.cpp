// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/enlace.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace kv::cliente {
namespace {

constexpr std::int64_t kPacienciaMs = 2000; // with an address that is not the last one

std::string palabras(int error) {
    switch (error) {
    case ECONNREFUSED:
        return "nadie escucha ahí (el driver atiende un solo cliente)";
    case EHOSTUNREACH:
    case ENETUNREACH:
        return "no hay camino hasta ahí";
    case ETIMEDOUT:
        return "no contesta";
    case ECONNRESET:
    case EPIPE:
        return "el otro extremo cortó";
    default:
        return std::generic_category().message(error);
    }
}

std::string palabrasDeNombre(int error) {
    switch (error) {
    case EAI_NONAME:
    case EAI_NODATA:
        return "no se conoce ese nombre";
    case EAI_AGAIN:
        return "el servidor de nombres no contesta";
    default:
        return gai_strerror(error);
    }
}

/// With nobody listening on a port that the kernel also gives to those who connect, an attempt may
/// meet itself, and would then keep the driver from listening.
bool consigoMismo(int descriptor) {
    sockaddr_storage aqui{};
    sockaddr_storage alla{};
    socklen_t a = sizeof aqui;
    socklen_t b = sizeof alla;
    return getsockname(descriptor, reinterpret_cast<sockaddr*>(&aqui), &a) == 0 && // NOLINT
           getpeername(descriptor, reinterpret_cast<sockaddr*>(&alla), &b) == 0 && // NOLINT
           a == b && std::memcmp(&aqui, &alla, a) == 0;
}

} // namespace

std::string Servidor::texto() const {
    const bool conCorchetes = nombre.find(':') != std::string::npos;
    return (conCorchetes ? "[" + nombre + "]" : nombre) + ":" + std::to_string(puerto);
}

/// A look-up that may outlive who asked for it: it is the thread's as much as the link's.
struct Enlace::Consulta {
    Servidor servidor;
    int aviso = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::atomic<bool> lista = false; ///< what follows is the link's from then on
    int error = 0;
    struct Direccion {
        sockaddr_storage bytes;
        socklen_t largo;
    };
    std::vector<Direccion> direcciones;
    std::size_t probadas = 0;

    explicit Consulta(Servidor s) : servidor(std::move(s)) {}
    ~Consulta() { close(aviso); }
    Consulta(const Consulta&) = delete;
    Consulta& operator=(const Consulta&) = delete;

    void buscar() {
        addrinfo pedido{};
        pedido.ai_family = AF_UNSPEC;
        pedido.ai_socktype = SOCK_STREAM;
        addrinfo* halladas = nullptr;
        error = getaddrinfo(servidor.nombre.c_str(), std::to_string(servidor.puerto).c_str(),
                            &pedido, &halladas);
        for (const addrinfo* a = halladas; a != nullptr; a = a->ai_next) {
            Direccion& d = direcciones.emplace_back();
            std::memcpy(&d.bytes, a->ai_addr, a->ai_addrlen);
            d.largo = a->ai_addrlen;
        }
        if (halladas != nullptr) freeaddrinfo(halladas);
        lista = true;
        eventfd_write(aviso, 1);
    }
};

Enlace::Enlace(BucleEpoll& bucle, OyenteDeZocalo& oyente)
    : bucle_(bucle), oyente_(oyente),
      paciencia_(bucle.crearTemporizador([this] { probarSiguiente(); })) {}

Enlace::~Enlace() { cerrar(); }

void Enlace::vigilar(int descriptor, Estado estado, std::uint32_t sucesos) {
    descriptor_ = descriptor;
    estado_ = estado;
    registro_ = bucle_.registrar(descriptor, sucesos, *this);
}

/// The look-up's descriptor is closed by the look-up.
void Enlace::soltar() {
    paciencia_->habilitar(false);
    if (descriptor_ < 0) return;
    bucle_.olvidar(registro_, descriptor_);
    if (estado_ != Estado::Buscando) close(descriptor_);
    descriptor_ = -1;
    estado_ = Estado::Cerrado;
}

void Enlace::cerrar() {
    soltar();
    consulta_.reset();
}

void Enlace::conectar(const Servidor& servidor) {
    cerrar();
    motivo_.clear();
    consulta_ = std::make_shared<Consulta>(servidor);
    vigilar(consulta_->aviso, Estado::Buscando, EPOLLIN);
    std::thread([consulta = consulta_] { consulta->buscar(); }).detach();
}

void Enlace::alSaberDirecciones() {
    if (!consulta_->lista) return;
    if (consulta_->error != 0) motivo_ = palabrasDeNombre(consulta_->error);
    probarSiguiente();
}

void Enlace::probarSiguiente() {
    soltar();
    auto& todas = consulta_->direcciones;
    while (consulta_->probadas < todas.size()) {
        const auto& d = todas[consulta_->probadas++];
        const int s = socket(d.bytes.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        const int si = 1;
        if (s >= 0) setsockopt(s, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        const auto* generica = reinterpret_cast<const sockaddr*>(&d.bytes); // NOLINT
        if (s >= 0 && (::connect(s, generica, d.largo) == 0 || errno == EINPROGRESS)) {
            vigilar(s, Estado::Conectando, EPOLLOUT);
            if (consulta_->probadas < todas.size()) paciencia_->rearmar(kPacienciaMs);
            return;
        }
        motivo_ = palabras(errno);
        if (s >= 0) close(s);
    }
    oyente_.alCortarse(0);
}

void Enlace::alOcurrir(std::uint32_t /*sucesos*/) {
    if (estado_ == Estado::Buscando) return alSaberDirecciones();
    if (estado_ == Estado::Conectando) return terminarConexion();
    recibir();
}

void Enlace::terminarConexion() {
    int error = 0;
    socklen_t largo = sizeof error;
    getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &largo);
    if (error == 0 && consigoMismo(descriptor_)) error = ECONNREFUSED;
    if (error != 0) {
        motivo_ = palabras(error);
        return probarSiguiente();
    }
    paciencia_->habilitar(false);
    motivo_.clear();
    bucle_.cambiar(registro_, descriptor_, EPOLLIN | EPOLLRDHUP);
    estado_ = Estado::Conectado;
    oyente_.alConectar(0);
}

void Enlace::recibir() {
    const auto memoria = bucle_.memoriaDeRecepcion();
    const ssize_t n = ::recv(descriptor_, memoria.data(), memoria.size(), 0);
    if (n > 0) return oyente_.alLlegarDatos(0, memoria.first(static_cast<std::size_t>(n)));
    if (n < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (n < 0) motivo_ = palabras(errno);
    soltar();
    oyente_.alCortarse(0);
}

/// What fails here shows at the next look at the descriptor.
void Enlace::enviar(std::string_view bytes) {
    if (estado_ != Estado::Conectado) return;
    const ssize_t n = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (n != static_cast<ssize_t>(bytes.size())) ::shutdown(descriptor_, SHUT_RDWR);
}

} // namespace kv::cliente
