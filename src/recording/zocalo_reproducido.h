// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/zocalo.h"
#include "recording/reproductor.h"

#include <string>
#include <string_view>

namespace kv {

/// A socket of a recording: what is sent goes nowhere, what comes is called in by the loop.
class ZocaloReproducido final : public Zocalo {
  public:
    ZocaloReproducido(Reproductor& reproductor, OyenteDeZocalo& oyente, std::size_t indice,
                      std::uint64_t numero)
        : reproductor_(reproductor), oyente_(oyente), indice_(indice), numero_(numero) {}
    ~ZocaloReproducido() override { reproductor_.olvidar(numero_); }
    ZocaloReproducido(const ZocaloReproducido&) = delete;
    ZocaloReproducido& operator=(const ZocaloReproducido&) = delete;

    [[nodiscard]] EstadoZocalo estado() const override { return estado_; }
    void conectar(const std::string& /*ip*/, std::uint32_t /*puerto*/) override {
        pasar(EstadoZocalo::Conectando);
    }
    void escuchar(const std::string& /*ip*/, std::uint32_t /*puerto*/) override {
        pasar(EstadoZocalo::Escuchando);
    }
    void escucharLocal(const std::string& /*ruta*/, std::int64_t /*grupo*/) override {
        pasar(EstadoZocalo::Escuchando);
    }
    void reservar() override { cerrar(); }
    void aceptar() override {
        pasar(EstadoZocalo::Conectado);
        conexiones_ += estado_ == EstadoZocalo::Conectado ? 1U : 0U;
    }
    [[nodiscard]] std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                        std::size_t indice) override {
        auto aparte = reproductor_.crearZocalo(oyente, indice);
        aparte->aceptar();
        return aparte;
    }
    void cerrar() override {
        estado_ = EstadoZocalo::Cerrado;
        motivo_.clear();
    }
    void abortar() override { cerrar(); }
    bool enviar(std::span<const std::uint8_t> /*bytes*/) override {
        const bool podia = estado_ == EstadoZocalo::Conectado;
        pasar(estado_);
        return podia && estado_ == EstadoZocalo::Conectado;
    }
    void agruparEnvios(bool /*agrupar*/) override {}
    void frenar(bool /*freno*/) override {}
    void limitarCola(std::size_t /*bytes*/) override {}
    [[nodiscard]] std::size_t enCola() const override {
        return reproductor_.toca(Entrada::EnCola) ? suNumero() : 0;
    }
    [[nodiscard]] std::size_t bytesSinConfirmar() const override {
        return reproductor_.toca(Entrada::SinConfirmar) ? suNumero() : 0;
    }
    void fijarPaciencia(std::int64_t /*ms*/) override {}
    [[nodiscard]] std::uint64_t conexiones() const override { return conexiones_; }
    [[nodiscard]] const std::string& motivo() const override { return motivo_; }
    [[nodiscard]] std::uint32_t puertoLocal() const override {
        if (!reproductor_.toca(Entrada::PuertoLocal)) return 0;
        return static_cast<std::uint32_t>(reproductor_.cinta().numero());
    }

    // Called by the loop:
    void entregarConexion() {
        ++conexiones_;
        estado_ = EstadoZocalo::Conectado;
        oyente_.alConectar(indice_);
    }
    void entregarDatos(std::string_view bytes) {
        oyente_.alLlegarDatos(
            indice_, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}); // NOLINT
    }
    void entregarCorte(EstadoZocalo estado, std::string motivo) {
        estado_ = estado;
        motivo_ = std::move(motivo);
        oyente_.alCortarse(indice_);
    }
    void entregarPedido(std::string_view remoto) { oyente_.alPedirConexion(indice_, remoto); }

  private:
    /// Where a call leads, unless the recording knows better.
    void pasar(EstadoZocalo estado) {
        estado_ = estado;
        if (estado != EstadoZocalo::Error) motivo_.clear();
        if (!reproductor_.toca(Entrada::Estado)) return;
        estado_ = static_cast<EstadoZocalo>(suNumero());
        motivo_ = reproductor_.cinta().texto();
    }
    /// The number that an answer about this socket holds.
    [[nodiscard]] std::uint64_t suNumero() const {
        CintaLeida& c = reproductor_.cinta();
        if (c.numero() != numero_) reproductor_.noCorresponde("un zocalo");
        return c.numero();
    }

    Reproductor& reproductor_;
    OyenteDeZocalo& oyente_;
    std::size_t indice_;
    std::uint64_t numero_;
    EstadoZocalo estado_ = EstadoZocalo::Cerrado;
    std::uint64_t conexiones_ = 0;
    std::string motivo_;
};

} // namespace kv
