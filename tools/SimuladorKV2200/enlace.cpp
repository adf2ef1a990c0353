// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/enlace.h"

#include <algorithm>
#include <cerrno>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kv::simulador {
namespace {

constexpr std::uint32_t kRecibir = EPOLLIN | EPOLLRDHUP;
constexpr std::size_t kMaximoEnEspera = 10'000; // answers of a client that asks without end
constexpr std::size_t kMaximoPorEnviar = std::size_t{64} * 1024;

} // namespace

Enlace::Enlace(Entorno entorno, std::size_t direccion, std::string nombre, int descriptor,
               Azar azar, std::function<void(Enlace&)> alTerminar)
    : e_(entorno), direccion_(direccion), nombre_(std::move(nombre)), descriptor_(descriptor),
      registro_(e_.bucle.registrar(descriptor, kRecibir, *this)), azar_(azar),
      alTerminar_(std::move(alTerminar)) {
    tmrSalida_ = e_.bucle.crearTemporizador([this] {
        tmrSalida_->habilitar(false);
        enviarVencidos();
    });
    e_.traza.linea(nombre_, "conectado");
    const std::int64_t vida = vidaDeEnlaceMs(e_.planta.fallasDe(direccion_), azar_);
    if (vida == 0) return;
    tmrCorte_ = e_.bucle.crearTemporizador([this] {
        const linger nada{1, 0};
        if (e_.planta.fallasDe(direccion_).cortarDeGolpe)
            setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &nada, sizeof nada);
        terminar("cortado por el simulador");
    });
    tmrCorte_->rearmar(vida);
}

Enlace::~Enlace() {
    if (descriptor_ < 0) return;
    e_.bucle.olvidar(registro_, descriptor_);
    close(descriptor_);
}

std::int64_t Enlace::ahoraMs() const { return e_.bucle.reloj().monotonicoMs() - e_.inicioMs; }

void Enlace::terminar(const std::string& porque) {
    if (descriptor_ < 0) return;
    e_.bucle.olvidar(registro_, descriptor_);
    close(descriptor_);
    descriptor_ = -1;
    tmrSalida_->habilitar(false);
    if (tmrCorte_) tmrCorte_->habilitar(false);
    e_.traza.linea(nombre_, porque);
    alTerminar_(*this);
}

void Enlace::alOcurrir(std::uint32_t sucesos) {
    if ((sucesos & EPOLLOUT) != 0) enviar();
    if ((sucesos & ~static_cast<std::uint32_t>(EPOLLOUT)) != 0) recibir();
}

void Enlace::recibir() {
    if (descriptor_ < 0) return;
    const auto memoria = e_.bucle.memoriaDeRecepcion();
    const ssize_t n = ::recv(descriptor_, memoria.data(), memoria.size(), 0);
    if (n < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (n <= 0) return terminar("desconectado");
    solicitudes_.agregar(memoria.first(static_cast<std::size_t>(n)));
    while (const auto s = solicitudes_.siguiente()) {
        if (s->solicitud)
            atender(*s->solicitud);
        else
            e_.traza.bytes(nombre_, "<-", s->ignorados, "ignorado: no es una solicitud válida");
    }
    if (salida_.enEspera() > kMaximoEnEspera) return terminar("cortado: demasiadas solicitudes");
    enviarVencidos();
}

void Enlace::atender(const Solicitud& solicitud) {
    e_.traza.bytes(nombre_, "<-", std::string(solicitud.begin(), solicitud.end()), "");
    const std::int64_t ahora = ahoraMs();
    const auto atencion = e_.planta.atender(direccion_, solicitud, ahora);
    if (!atencion) return e_.traza.linea(nombre_, "sin respuesta: no hay tal estación");
    auto trozos =
        planear(atencion->respuesta, solicitud[0] == kEscribir, atencion->fallas, ahora, azar_);
    if (trozos.empty()) return e_.traza.linea(nombre_, "sin respuesta");
    salida_.agregar(std::move(trozos), ahora);
}

void Enlace::enviarVencidos() {
    const std::int64_t ahora = ahoraMs();
    while (const auto trozo = salida_.tomar(ahora)) {
        e_.traza.bytes(nombre_, "->", *trozo, "");
        porEnviar_ += *trozo;
    }
    const auto proximo = salida_.proximo();
    if (proximo) tmrSalida_->rearmar(std::max<std::int64_t>(1, *proximo - ahora));
    enviar();
}

void Enlace::enviar() {
    if (descriptor_ < 0 || (porEnviar_.empty() && !esperaEscritura_)) return;
    const ssize_t n = ::send(descriptor_, porEnviar_.data(), porEnviar_.size(), MSG_NOSIGNAL);
    if (n < 0 && errno != EAGAIN && errno != EINTR) return terminar("desconectado");
    if (n > 0) porEnviar_.erase(0, static_cast<std::size_t>(n));
    if (porEnviar_.size() > kMaximoPorEnviar) return terminar("cortado: no lee lo que se le envía");
    const bool faltan = !porEnviar_.empty();
    if (faltan == esperaEscritura_) return;
    esperaEscritura_ = faltan;
    e_.bucle.cambiar(registro_, descriptor_, faltan ? kRecibir | EPOLLOUT : kRecibir);
}

} // namespace kv::simulador
