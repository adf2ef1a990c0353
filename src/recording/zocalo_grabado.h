// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/zocalo.h"
#include "recording/grabador.h"

namespace kv {

/// A socket that writes down what it brings, and every state that a call did not have to lead to.
class ZocaloGrabado final : public Zocalo, private OyenteDeZocalo {
  public:
    ZocaloGrabado(Grabador& grabador, Bucle& bucle, OyenteDeZocalo& oyente, std::size_t indice,
                  std::uint64_t numero)
        : grabador_(grabador), oyente_(oyente), indice_(indice), numero_(numero),
          dentro_(bucle.crearZocalo(*this, 0)) {}
    /// The link that `escucha` is asked for.
    ZocaloGrabado(Grabador& grabador, Zocalo& escucha, OyenteDeZocalo& oyente, std::size_t indice,
                  std::uint64_t numero)
        : grabador_(grabador), oyente_(oyente), indice_(indice), numero_(numero),
          dentro_(escucha.aceptarAparte(*this, 0)) {}

    [[nodiscard]] EstadoZocalo estado() const override { return dentro_->estado(); }
    void conectar(const std::string& ip, std::uint32_t puerto) override;
    void escuchar(const std::string& ip, std::uint32_t puerto) override;
    void escucharLocal(const std::string& ruta, std::int64_t grupo) override;
    void reservar() override { dentro_->reservar(); }
    void aceptar() override;
    [[nodiscard]] std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                        std::size_t indice) override;
    void cerrar() override { dentro_->cerrar(); }
    void abortar() override { dentro_->abortar(); }
    bool enviar(std::span<const std::uint8_t> bytes) override;
    void agruparEnvios(bool agrupar) override { dentro_->agruparEnvios(agrupar); }
    void frenar(bool freno) override { dentro_->frenar(freno); }
    void limitarCola(std::size_t bytes) override { dentro_->limitarCola(bytes); }
    [[nodiscard]] std::size_t enCola() const override;
    [[nodiscard]] std::size_t bytesSinConfirmar() const override;
    void fijarPaciencia(std::int64_t ms) override { dentro_->fijarPaciencia(ms); }
    [[nodiscard]] std::uint64_t conexiones() const override { return dentro_->conexiones(); }
    [[nodiscard]] const std::string& motivo() const override { return dentro_->motivo(); }
    [[nodiscard]] std::uint32_t puertoLocal() const override;

  private:
    void alConectar(std::size_t indice) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;
    void alPedirConexion(std::size_t indice, std::string_view remoto) override;
    void comprobar(EstadoZocalo esperado);

    Grabador& grabador_;
    OyenteDeZocalo& oyente_;
    std::size_t indice_;
    std::uint64_t numero_;
    std::unique_ptr<Zocalo> dentro_;
};

} // namespace kv
