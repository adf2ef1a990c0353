// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/zocalo_epoll.h"

#include "platform/epoll/archivo_de_zocalo.h"
#include "platform/epoll/extremos.h"
#include "platform/epoll/resolutor.h"
#include "platform/maquina.h"
#include "platform/motivo_de_enlace.h"
#include "text/texto.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::uint32_t kRecibir = EPOLLIN | EPOLLRDHUP;
constexpr std::int64_t kDescansoMs = 1000;
constexpr int kEnEspera = 128;

std::string alConectar(int error) { return motivoDeEnlace(error, FaseDeEnlace::AlConectar); }
std::string alEscuchar(int error) { return motivoDeEnlace(error, FaseDeEnlace::AlEscuchar); }
std::string yaArriba(int error) { return motivoDeEnlace(error, FaseDeEnlace::Establecido); }
std::string deArchivo(int error) { return std::generic_category().message(error); }

void sinDemora(int descriptor) {
    // A request is seven bytes and its answer is waited for: it is never held back to be sent with
    // others.
    const int si = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
}

} // namespace

ZocaloEpoll::ZocaloEpoll(BucleEpoll& bucle, OyenteDeZocalo& oyente, std::size_t indice)
    : bucle_(bucle), oyente_(oyente), indice_(indice), yo_(std::make_shared<ZocaloEpoll*>(this)) {}

ZocaloEpoll::~ZocaloEpoll() {
    *yo_ = nullptr;
    soltarPedido();
    soltar();
}

void ZocaloEpoll::soltarPedido() {
    if (pedido_ >= 0) close(pedido_);
    pedido_ = -1;
}

void ZocaloEpoll::soltarDescriptor() {
    if (descriptor_ < 0) return;
    bucle_.olvidar(registro_, descriptor_);
    close(std::exchange(descriptor_, -1));
}

void ZocaloEpoll::soltar() {
    soltarReserva();
    if (!rutaLocal_.empty()) unlink(std::exchange(rutaLocal_, {}).c_str());
    // One that does not answer has had its turn: the next attempt begins with the one behind it.
    if (estado_ == EstadoZocalo::Conectando) salto_ += probadas_;
    soltarDescriptor();
    if (!nombre_.empty()) bucle_.resolutor()->olvidar(std::exchange(nombre_, {}), *this);
    maquinas_.clear();
    probadas_ = 0;
    if (descanso_) descanso_->habilitar(false);
    cola_.clear();
    enviados_ = 0;
    esperaEscritura_ = false;
}

void ZocaloEpoll::cerrar() {
    soltar();
    estado_ = EstadoZocalo::Cerrado;
    motivo_.clear();
}

void ZocaloEpoll::abortar() {
    if (descriptor_ >= 0) {
        const linger nada{1, 0};
        setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &nada, sizeof nada);
    }
    cerrar();
}

std::size_t ZocaloEpoll::bytesSinConfirmar() const {
    int enElNucleo = 0;
    if (estado_ != EstadoZocalo::Conectado || ioctl(descriptor_, SIOCOUTQ, &enElNucleo) != 0)
        return 0;
    return enCola() + static_cast<std::size_t>(enElNucleo);
}

void ZocaloEpoll::fijarPaciencia(std::int64_t ms) {
    pacienciaMs_ = std::clamp<std::int64_t>(ms, 0, INT_MAX);
    if (estado_ == EstadoZocalo::Conectado) ponerPaciencia();
}

/// Only of a link that is up: how long to try for one is for who asks for it.
void ZocaloEpoll::ponerPaciencia() {
    const auto ms = static_cast<unsigned>(pacienciaMs_);
    setsockopt(descriptor_, IPPROTO_TCP, TCP_USER_TIMEOUT, &ms, sizeof ms);
}

void ZocaloEpoll::fallar(std::string motivo) {
    soltar();
    estado_ = EstadoZocalo::Error;
    motivo_ = std::move(motivo);
}

bool ZocaloEpoll::adoptar(int descriptor, EstadoZocalo estado, std::uint32_t sucesos) {
    registro_ = bucle_.registrar(descriptor, sucesos, *this);
    if (registro_ == BucleEpoll::kNoRegistrado) {
        const int error = errno;
        close(descriptor);
        fallar(yaArriba(error));
        return false;
    }
    descriptor_ = descriptor;
    estado_ = estado;
    freno_ = false;
    return true;
}

void ZocaloEpoll::conectar(const std::string& maquina, std::uint32_t puerto) {
    cerrar();
    const std::string texto(recortar(maquina));
    const ClaseDeMaquina clase = claseDeMaquina(texto);
    if (clase == ClaseDeMaquina::Ninguna || puerto == 0 || puerto > 65535)
        return fallar(enPalabras(Motivo::DireccionNoValida));
    puerto_ = puerto;
    if (clase == ClaseDeMaquina::Nombre) {
        Resolutor* const resolutor = bucle_.resolutor();
        if (resolutor == nullptr || !resolutor->pedir(texto, *this))
            return fallar(enPalabras(Motivo::NombreSinPreguntar, texto));
        nombre_ = texto;
        estado_ = EstadoZocalo::Conectando;
        return;
    }
    const auto m = maquinaDe(texto);
    if (!m) return fallar(enPalabras(Motivo::DireccionNoValida));
    maquinas_.assign(1, *m);
    probar();
}

void ZocaloEpoll::alResolver(const NombreResuelto& resuelto) {
    nombre_.clear();
    maquinas_ = resuelto.maquinas;
    if (maquinas_.empty()) {
        fallar(resuelto.motivo);
    } else {
        const auto primera = static_cast<std::ptrdiff_t>(salto_ % maquinas_.size());
        std::rotate(maquinas_.begin(), maquinas_.begin() + primera, maquinas_.end());
        probar();
    }
    if (estado_ == EstadoZocalo::Error) oyente_.alCortarse(indice_);
}

/// Begins with the next address to be tried; state 9 when no address is left.
void ZocaloEpoll::probar() {
    std::string motivo = std::exchange(motivo_, {});
    while (probadas_ < maquinas_.size()) {
        Maquina& m = maquinas_[probadas_++];
        const socklen_t largo = ponerPuerto(m, puerto_);
        const int d = socket(m.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (d < 0 || !BucleEpoll::alcanzaParaEstaciones(d)) {
            const int error = d < 0 ? errno : EMFILE;
            if (d >= 0) close(d);
            motivo = alConectar(error);
            bucle_.falto(error);
            continue;
        }
        sinDemora(d);
        const auto* generica = reinterpret_cast<const sockaddr*>(&m); // NOLINT
        // An interrupted one goes on by itself, as one that has just begun does.
        if (::connect(d, generica, largo) == 0 || errno == EINPROGRESS || errno == EINTR) {
            adoptar(d, EstadoZocalo::Conectando, EPOLLOUT);
            return;
        }
        motivo = alConectar(errno);
        close(d);
    }
    fallar(std::move(motivo));
}

void ZocaloEpoll::escuchar(const std::string& ip, std::uint32_t puerto) {
    const auto lugar = lugarParaEscuchar(ip, puerto);
    if (lugar && volverAEscuchar(*lugar)) return;
    cerrar();
    if (!lugar) return fallar(enPalabras(Motivo::DireccionNoValida));
    const int d = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (d < 0) return fallar(alEscuchar(errno));
    const int si = 1;
    setsockopt(d, SOL_SOCKET, SO_REUSEADDR, &si, sizeof si);
    const auto* generica = reinterpret_cast<const sockaddr*>(&*lugar); // NOLINT
    if (bind(d, generica, sizeof *lugar) != 0 || listen(d, kEnEspera) != 0) {
        const int error = errno;
        close(d);
        return fallar(alEscuchar(error));
    }
    lugar_ = *lugar;
    adoptar(d, EstadoZocalo::Escuchando, EPOLLIN);
}

void ZocaloEpoll::reservar() {
    if (estado_ != EstadoZocalo::Escuchando || !rutaLocal_.empty()) return cerrar();
    const int d = std::exchange(descriptor_, -1);
    bucle_.olvidar(registro_, d);
    // One that does not listen shares its port with any other that may, as this one did.
    const int no = 0;
    setsockopt(d, SOL_SOCKET, SO_REUSEADDR, &no, sizeof no);
    shutdown(d, SHUT_RD);
    cerrar();
    reservado_ = d;
}

void ZocaloEpoll::soltarReserva() {
    if (reservado_ >= 0) close(std::exchange(reservado_, -1));
}

/// Where it has kept the port; false where it has not, or cannot go on there.
bool ZocaloEpoll::volverAEscuchar(const sockaddr_in& donde) {
    if (reservado_ < 0 || std::memcmp(&donde, &lugar_, sizeof donde) != 0) return false;
    // The links that were taken there share the port.
    const int si = 1;
    setsockopt(reservado_, SOL_SOCKET, SO_REUSEADDR, &si, sizeof si);
    if (listen(reservado_, kEnEspera) != 0) return false;
    const int d = std::exchange(reservado_, -1);
    cerrar();
    adoptar(d, EstadoZocalo::Escuchando, EPOLLIN);
    return true;
}

void ZocaloEpoll::escucharLocal(const std::string& ruta, std::int64_t grupo) {
    cerrar();
    ArchivoDeZocalo archivo(ruta);
    if (!archivo.liberar()) return fallar("ya hay un archivo que no es un zocalo en " + ruta);
    const int d = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (d < 0) return fallar(deArchivo(errno));
    // No program can connect before it listens, and by then the file is its owner's alone.
    if (!archivo.atar(d) || listen(d, kEnEspera) != 0) {
        const int error = errno;
        close(d);
        return fallar(deArchivo(error));
    }
    rutaLocal_ = ruta;
    if (!adoptar(d, EstadoZocalo::Escuchando, EPOLLIN)) return;
    if (!archivo.darAlGrupo(grupo)) motivo_ = deArchivo(errno);
}

std::uint32_t ZocaloEpoll::puertoLocal() const {
    sockaddr_in direccion{};
    socklen_t largo = sizeof direccion;
    auto* generica = reinterpret_cast<sockaddr*>(&direccion); // NOLINT
    if (descriptor_ < 0 || getsockname(descriptor_, generica, &largo) != 0) return 0;
    return ntohs(direccion.sin_port);
}

void ZocaloEpoll::aceptar() {
    if (pedido_ < 0) return;
    const int nuevo = std::exchange(pedido_, -1);
    cerrar();
    sinDemora(nuevo);
    if (!adoptar(nuevo, EstadoZocalo::Conectado, kRecibir)) return;
    ponerPaciencia();
    ++conexiones_;
}

std::unique_ptr<Zocalo> ZocaloEpoll::aceptarAparte(OyenteDeZocalo& oyente, std::size_t indice) {
    auto aparte = std::make_unique<ZocaloEpoll>(bucle_, oyente, indice);
    aparte->pedido_ = std::exchange(pedido_, -1);
    aparte->aceptar();
    return aparte;
}

bool ZocaloEpoll::enviar(std::span<const std::uint8_t> bytes) {
    if (estado_ != EstadoZocalo::Conectado) return false;
    std::size_t tomados = 0;
    if (enCola() == 0 && !agrupar_) {
        const ssize_t n = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (n < 0 && errno != EAGAIN && errno != EINTR) {
            fallar(yaArriba(errno));
            return false;
        }
        tomados = n > 0 ? static_cast<std::size_t>(n) : 0;
        if (tomados == bytes.size()) return true;
    }
    if (enCola() + bytes.size() - tomados > limiteDeCola_) {
        fallar(enPalabras(Motivo::NoLee));
        return false;
    }
    const auto resto = bytes.subspan(tomados);
    cola_.append(reinterpret_cast<const char*>(resto.data()), resto.size()); // NOLINT
    if (agrupar_ && !esperaEscritura_ && (freno_ || enCola() < kGrupo)) {
        pedirEnvioAgrupado();
        return true;
    }
    return esperaEscritura_ || vaciarCola();
}

void ZocaloEpoll::pedirEnvioAgrupado() {
    if (agrupado_) return;
    agrupado_ = true;
    bucle_.despuesDeEstaVuelta([yo = yo_] {
        if (*yo == nullptr) return;
        ZocaloEpoll& z = **yo;
        z.agrupado_ = false;
        if (z.freno_) return;
        if (z.estado_ == EstadoZocalo::Conectado && !z.vaciarCola())
            z.oyente_.alCortarse(z.indice_);
    });
}

bool ZocaloEpoll::vaciarCola() {
    while (enviados_ < cola_.size()) {
        const ssize_t n =
            ::send(descriptor_, cola_.data() + enviados_, cola_.size() - enviados_, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && errno != EAGAIN) {
            fallar(yaArriba(errno));
            return false;
        }
        if (n < 0) break;
        enviados_ += static_cast<std::size_t>(n);
    }
    if (enviados_ == cola_.size()) {
        cola_.clear();
        enviados_ = 0;
    } else if (enviados_ > cola_.size() / 2) {
        cola_.erase(0, enviados_);
        enviados_ = 0;
    }
    const bool faltan = !cola_.empty();
    if (faltan != esperaEscritura_) {
        esperaEscritura_ = faltan;
        vigilar();
    }
    return true;
}

/// The kernel always reports the end of a link; while the link is held, only once.
void ZocaloEpoll::vigilar() {
    std::uint32_t sucesos = kRecibir;
    if (freno_) sucesos = EPOLLET;
    if (esperaEscritura_) sucesos |= EPOLLOUT;
    bucle_.cambiar(registro_, descriptor_, sucesos);
}

void ZocaloEpoll::agruparEnvios(bool agrupar) {
    agrupar_ = agrupar;
    if (!agrupar_ && estado_ == EstadoZocalo::Conectado && !esperaEscritura_) (void)vaciarCola();
}

void ZocaloEpoll::frenar(bool freno) {
    if (estado_ != EstadoZocalo::Conectado || std::exchange(freno_, freno) == freno) return;
    vigilar();
    if (!freno_ && enCola() > 0 && !esperaEscritura_) pedirEnvioAgrupado();
}

void ZocaloEpoll::alOcurrir(std::uint32_t sucesos) {
    if (estado_ == EstadoZocalo::Conectando) return terminarConexion();
    if (estado_ == EstadoZocalo::Escuchando) return atenderPedido();
    if ((sucesos & EPOLLOUT) != 0 && !vaciarCola()) return oyente_.alCortarse(indice_);
    if (!freno_ && (sucesos & ~static_cast<std::uint32_t>(EPOLLOUT)) != 0) recibir();
}

void ZocaloEpoll::terminarConexion() {
    int error = 0;
    socklen_t largo = sizeof error;
    getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &largo);
    const bool mismo = error == 0 && esElMismo(descriptor_);
    if (error != 0 || mismo) {
        motivo_ = mismo ? enPalabras(Motivo::NoHayNadie) : alConectar(error);
        soltarDescriptor();
        probar();
        if (estado_ == EstadoZocalo::Error) oyente_.alCortarse(indice_);
        return;
    }
    bucle_.cambiar(registro_, descriptor_, kRecibir);
    estado_ = EstadoZocalo::Conectado;
    ponerPaciencia();
    ++conexiones_;
    oyente_.alConectar(indice_);
}

void ZocaloEpoll::recibir() {
    const auto memoria = bucle_.memoriaDeRecepcion();
    const ssize_t n = ::recv(descriptor_, memoria.data(), memoria.size(), 0);
    if (n > 0) return oyente_.alLlegarDatos(indice_, memoria.first(static_cast<std::size_t>(n)));
    if (n < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (n < 0) {
        fallar(yaArriba(errno));
    } else {
        soltar();
        estado_ = EstadoZocalo::CerradoPorElOtro;
    }
    oyente_.alCortarse(indice_);
}

void ZocaloEpoll::atenderPedido() {
    sockaddr_in direccion{};
    socklen_t largo = sizeof direccion;
    auto* generica = reinterpret_cast<sockaddr*>(&direccion); // NOLINT
    const bool local = !rutaLocal_.empty();
    soltarPedido(); // of a handler that threw, or that let this one come
    pedido_ = accept4(descriptor_, local ? nullptr : generica, local ? nullptr : &largo,
                      SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (pedido_ < 0) {
        if (errno == EAGAIN || errno == EINTR || errno == ECONNABORTED) return;
        bucle_.falto(errno);
        return descansarDeAceptar();
    }
    const auto yo = yo_;
    oyente_.alPedirConexion(indice_, local ? quienLlama(pedido_) : textoDe(direccion));
    if (*yo != nullptr) soltarPedido();
}

/// Out of descriptors or memory: who wants to connect still waits, and the kernel would say so at
/// every look. Nobody is asked for until a while later, when some may have come free.
void ZocaloEpoll::descansarDeAceptar() {
    if (!descanso_) {
        descanso_ = std::make_unique<Temporizador>(bucle_.propios(), [this] {
            descanso_->habilitar(false);
            bucle_.cambiar(registro_, descriptor_, EPOLLIN);
        });
    }
    bucle_.cambiar(registro_, descriptor_, 0);
    descanso_->rearmar(kDescansoMs);
}

} // namespace kv
