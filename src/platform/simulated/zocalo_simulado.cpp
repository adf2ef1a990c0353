// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/zocalo_simulado.h"

#include "platform/motivo_de_enlace.h"
#include "text/texto.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kv {

ZocaloSimulado::ZocaloSimulado(RedSimulada& red, OyenteDeZocalo& oyente, std::size_t indice,
                               std::function<void(std::function<void()>)> alFinal)
    : red_(red), oyente_(oyente), indice_(indice), alFinal_(std::move(alFinal)),
      yo_(std::make_shared<ZocaloSimulado*>(this)) {}

ZocaloSimulado::~ZocaloSimulado() {
    *yo_ = nullptr;
    soltar();
}

void ZocaloSimulado::soltar() {
    if (enlace_ != 0) red_.cerrarDesdeZocalo(enlace_);
    if (estado_ == EstadoZocalo::Escuchando || std::exchange(reservado_, false))
        red_.dejarDeEscuchar(puerto_, *this);
    enlace_ = 0;
    puerto_ = 0;
    cola_.clear();
}

void ZocaloSimulado::cerrar() {
    soltar();
    estado_ = EstadoZocalo::Cerrado;
    motivo_.clear();
}

void ZocaloSimulado::abortar() {
    red_.abortarDesdeZocalo(std::exchange(enlace_, 0));
    cerrar();
}

std::size_t ZocaloSimulado::bytesSinConfirmar() const {
    return estado_ == EstadoZocalo::Conectado ? cola_.size() + red_.sinConfirmar(enlace_) : 0;
}

void ZocaloSimulado::fijarPaciencia(std::int64_t ms) {
    pacienciaUs_ = ms * 1000;
    if (estado_ == EstadoZocalo::Conectado) red_.fijarPaciencia(enlace_, pacienciaUs_);
}

void ZocaloSimulado::conectar(const std::string& ip, std::uint32_t puerto) {
    cerrar();
    estado_ = EstadoZocalo::Conectando;
    enlace_ = red_.pedirConexion(*this, std::string(recortar(ip)), puerto);
}

void ZocaloSimulado::escuchar(const std::string& /*ip*/, std::uint32_t puerto) {
    cerrar();
    if (red_.escuchar(puerto, *this)) {
        estado_ = EstadoZocalo::Escuchando;
        puerto_ = puerto;
    } else {
        estado_ = EstadoZocalo::Error;
        motivo_ = motivoDeEnlace(EADDRINUSE, FaseDeEnlace::AlEscuchar);
    }
}

void ZocaloSimulado::escucharLocal(const std::string& ruta, std::int64_t grupo) {
    escuchar({}, red_.puertoDeRuta(ruta));
    if (grupo >= 0 && red_.niegaGrupos()) motivo_ = "no se puede dar a ese grupo";
}

void ZocaloSimulado::reservar() {
    if (estado_ != EstadoZocalo::Escuchando) return;
    reservado_ = true;
    estado_ = EstadoZocalo::Cerrado;
}

void ZocaloSimulado::aceptar() {
    if (pedido_ == 0) return;
    const IdEnlace nuevo = std::exchange(pedido_, 0);
    cerrar();
    red_.adoptar(nuevo, *this);
    red_.fijarPaciencia(nuevo, pacienciaUs_);
    enlace_ = nuevo;
    freno_ = false;
    estado_ = EstadoZocalo::Conectado;
    ++conexiones_;
}

std::unique_ptr<Zocalo> ZocaloSimulado::aceptarAparte(OyenteDeZocalo& oyente, std::size_t indice) {
    auto aparte = std::make_unique<ZocaloSimulado>(red_, oyente, indice, alFinal_);
    aparte->pedido_ = std::exchange(pedido_, 0);
    aparte->aceptar();
    return aparte;
}

bool ZocaloSimulado::enviar(std::span<const std::uint8_t> bytes) {
    if (estado_ != EstadoZocalo::Conectado) return false;
    if (cola_.size() + bytes.size() > limiteDeCola_) {
        soltar();
        estado_ = EstadoZocalo::Error;
        motivo_ = enPalabras(Motivo::NoLee);
        return false;
    }
    cola_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size()); // NOLINT
    if (agrupar_ && (freno_ || cola_.size() < kGrupo)) {
        pedirEnvioAgrupado();
    } else {
        pasarCola();
    }
    return true;
}

void ZocaloSimulado::pedirEnvioAgrupado() {
    if (std::exchange(agrupado_, true)) return;
    alFinal_([yo = yo_] {
        if (*yo == nullptr) return;
        (*yo)->agrupado_ = false;
        if (!(*yo)->freno_) (*yo)->pasarCola();
    });
}

void ZocaloSimulado::frenar(bool freno) {
    if (estado_ != EstadoZocalo::Conectado || std::exchange(freno_, freno) == freno) return;
    red_.frenar(enlace_, freno);
    if (!freno) pedirEnvioAgrupado();
}

void ZocaloSimulado::pasarCola() {
    if (estado_ != EstadoZocalo::Conectado) return;
    const std::size_t n = std::min(cola_.size(), red_.ventana(enlace_));
    if (n == 0) return;
    const std::string ahora = cola_.substr(0, n);
    cola_.erase(0, n);
    red_.desdeZocalo(enlace_,
                     {reinterpret_cast<const std::uint8_t*>(ahora.data()), ahora.size()}); // NOLINT
}

void ZocaloSimulado::entregarConexion(IdEnlace enlace) {
    enlace_ = enlace;
    freno_ = false;
    estado_ = EstadoZocalo::Conectado;
    red_.fijarPaciencia(enlace, pacienciaUs_);
    ++conexiones_;
    oyente_.alConectar(indice_);
}

void ZocaloSimulado::noConectar(std::string motivo) {
    enlace_ = 0;
    estado_ = EstadoZocalo::Error;
    motivo_ = std::move(motivo);
}

void ZocaloSimulado::entregarRechazo(std::string motivo) {
    noConectar(std::move(motivo));
    oyente_.alCortarse(indice_);
}

void ZocaloSimulado::entregarDatos(std::span<const std::uint8_t> bytes) {
    oyente_.alLlegarDatos(indice_, bytes);
}

void ZocaloSimulado::entregarCorte() {
    enlace_ = 0;
    cola_.clear();
    estado_ = EstadoZocalo::CerradoPorElOtro;
    oyente_.alCortarse(indice_);
}

void ZocaloSimulado::entregarFalla(std::string motivo) {
    cola_.clear();
    entregarRechazo(std::move(motivo));
}

bool ZocaloSimulado::entregarPedido(IdEnlace enlace, const std::string& remoto) {
    if (estado_ != EstadoZocalo::Escuchando) return false;
    const auto yo = yo_;
    pedido_ = enlace;
    oyente_.alPedirConexion(indice_, remoto);
    return *yo != nullptr && std::exchange(pedido_, 0) == 0;
}

} // namespace kv
