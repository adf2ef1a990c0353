// SPDX-License-Identifier: Apache-2.0
#include "recording/zocalo_grabado.h"

namespace kv {

void ZocaloGrabado::comprobar(EstadoZocalo esperado) {
    // One that listens may have a reason to give although it does listen: a group that was refused.
    if (!grabador_.preguntar() || (dentro_->estado() == esperado && dentro_->motivo().empty()))
        return;
    grabador_.respuesta(Entrada::Estado)
        .numero(numero_)
        .numero(static_cast<std::uint8_t>(dentro_->estado()))
        .texto(dentro_->motivo());
    grabador_.cerrar();
}

void ZocaloGrabado::conectar(const std::string& ip, std::uint32_t puerto) {
    dentro_->conectar(ip, puerto);
    comprobar(EstadoZocalo::Conectando);
}

void ZocaloGrabado::escuchar(const std::string& ip, std::uint32_t puerto) {
    dentro_->escuchar(ip, puerto);
    comprobar(EstadoZocalo::Escuchando);
}

void ZocaloGrabado::escucharLocal(const std::string& ruta, std::int64_t grupo) {
    dentro_->escucharLocal(ruta, grupo);
    comprobar(EstadoZocalo::Escuchando);
}

void ZocaloGrabado::aceptar() {
    dentro_->aceptar();
    comprobar(EstadoZocalo::Conectado);
}

std::unique_ptr<Zocalo> ZocaloGrabado::aceptarAparte(OyenteDeZocalo& oyente, std::size_t indice) {
    auto aparte = std::make_unique<ZocaloGrabado>(grabador_, *dentro_, oyente, indice,
                                                  grabador_.numerarZocalo());
    aparte->comprobar(EstadoZocalo::Conectado);
    return aparte;
}

bool ZocaloGrabado::enviar(std::span<const std::uint8_t> bytes) {
    const EstadoZocalo antes = dentro_->estado();
    const bool bien = dentro_->enviar(bytes);
    comprobar(antes);
    return bien;
}

std::size_t ZocaloGrabado::bytesSinConfirmar() const {
    const std::size_t bytes = dentro_->bytesSinConfirmar();
    if (grabador_.preguntar() && bytes != 0) {
        grabador_.respuesta(Entrada::SinConfirmar).numero(numero_).numero(bytes);
        grabador_.cerrar();
    }
    return bytes;
}

std::size_t ZocaloGrabado::enCola() const {
    const std::size_t bytes = dentro_->enCola();
    if (grabador_.preguntar() && bytes != 0) {
        grabador_.respuesta(Entrada::EnCola).numero(numero_).numero(bytes);
        grabador_.cerrar();
    }
    return bytes;
}

std::uint32_t ZocaloGrabado::puertoLocal() const {
    const std::uint32_t puerto = dentro_->puertoLocal();
    if (!grabador_.preguntar()) return puerto;
    grabador_.respuesta(Entrada::PuertoLocal).numero(puerto);
    grabador_.cerrar();
    return puerto;
}

void ZocaloGrabado::alConectar(std::size_t /*indice*/) {
    grabador_.llamada(Entrada::Conectado).numero(numero_);
    grabador_.cerrar();
    oyente_.alConectar(indice_);
}

void ZocaloGrabado::alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> bytes) {
    grabador_.llamada(Entrada::Datos)
        .numero(numero_)
        .texto({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); // NOLINT
    grabador_.cerrar();
    oyente_.alLlegarDatos(indice_, bytes);
}

void ZocaloGrabado::alCortarse(std::size_t /*indice*/) {
    grabador_.llamada(Entrada::Cortado)
        .numero(numero_)
        .numero(static_cast<std::uint8_t>(dentro_->estado()))
        .texto(dentro_->motivo());
    grabador_.cerrar();
    oyente_.alCortarse(indice_);
}

void ZocaloGrabado::alPedirConexion(std::size_t /*indice*/, std::string_view remoto) {
    grabador_.llamada(Entrada::Pedido).numero(numero_).texto(remoto);
    grabador_.cerrar();
    oyente_.alPedirConexion(indice_, remoto);
}

} // namespace kv
