// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/simulated/bucle_simulado.h"

#include <memory>
#include <string>
#include <utility>

namespace kv::mundo {

/// Hears of every request and every attempt to connect at the moment in which the driver makes it,
/// before anything else can happen.
class AlEnviar {
  public:
    virtual ~AlEnviar() = default;
    virtual void alEnviar(std::size_t zocalo, std::span<const std::uint8_t> bytes) = 0;
    /// A connection is asked for, before anything comes of it.
    virtual void alPedirEnlace(std::size_t zocalo) = 0;
};

/// A socket that passes everything on and tells what is sent and asked for.
class ZocaloEspia final : public Zocalo {
  public:
    ZocaloEspia(std::unique_ptr<Zocalo> real, std::size_t indice, AlEnviar*& oidor)
        : real_(std::move(real)), indice_(indice), oidor_(oidor) {}
    [[nodiscard]] EstadoZocalo estado() const override { return real_->estado(); }
    void conectar(const std::string& ip, std::uint32_t puerto) override {
        if (oidor_ != nullptr) oidor_->alPedirEnlace(indice_);
        real_->conectar(ip, puerto);
    }
    void escuchar(const std::string& ip, std::uint32_t puerto) override {
        real_->escuchar(ip, puerto);
    }
    void escucharLocal(const std::string& ruta, std::int64_t grupo) override {
        real_->escucharLocal(ruta, grupo);
    }
    void reservar() override { real_->reservar(); }
    void aceptar() override { real_->aceptar(); }
    [[nodiscard]] std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                        std::size_t indice) override {
        return real_->aceptarAparte(oyente, indice);
    }
    void cerrar() override { real_->cerrar(); }
    void abortar() override { real_->abortar(); }
    bool enviar(std::span<const std::uint8_t> bytes) override {
        if (oidor_ != nullptr) oidor_->alEnviar(indice_, bytes);
        return real_->enviar(bytes);
    }
    void agruparEnvios(bool agrupar) override { real_->agruparEnvios(agrupar); }
    void frenar(bool freno) override { real_->frenar(freno); }
    void limitarCola(std::size_t bytes) override { real_->limitarCola(bytes); }
    [[nodiscard]] std::size_t enCola() const override { return real_->enCola(); }
    [[nodiscard]] std::size_t bytesSinConfirmar() const override {
        return real_->bytesSinConfirmar();
    }
    void fijarPaciencia(std::int64_t ms) override { real_->fijarPaciencia(ms); }
    [[nodiscard]] std::uint64_t conexiones() const override { return real_->conexiones(); }
    [[nodiscard]] const std::string& motivo() const override { return real_->motivo(); }
    [[nodiscard]] std::uint32_t puertoLocal() const override { return real_->puertoLocal(); }

  private:
    std::unique_ptr<Zocalo> real_;
    std::size_t indice_;
    AlEnviar*& oidor_;
};

/// The simulated loop, with an ear on the sockets towards the stations. The first socket that an
/// engine makes is that of its server and is left alone.
class BucleEspia final : public BucleSimulado {
  public:
    [[nodiscard]] std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                      std::size_t indice) override {
        auto real = BucleSimulado::crearZocalo(oyente, indice);
        if (!std::exchange(hayServidor_, true)) return real;
        return std::make_unique<ZocaloEspia>(std::move(real), indice, oidor_);
    }
    void avisarA(AlEnviar* oidor) { oidor_ = oidor; }

  private:
    AlEnviar* oidor_ = nullptr;
    bool hayServidor_ = false;
};

} // namespace kv::mundo
