// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/simulated/red_simulada.h"
#include "platform/zocalo.h"

#include <functional>
#include <memory>
#include <string>

namespace kv {

/// A socket of the simulated network, with the states and the order of events of the real one. Any
/// text is an address or a name here; one that the network does not serve refuses.
class ZocaloSimulado final : public Zocalo {
  public:
    /// `alFinal` runs a task once at the end of the loop's turn.
    ZocaloSimulado(RedSimulada& red, OyenteDeZocalo& oyente, std::size_t indice,
                   std::function<void(std::function<void()>)> alFinal);
    ~ZocaloSimulado() override;
    ZocaloSimulado(const ZocaloSimulado&) = delete;
    ZocaloSimulado& operator=(const ZocaloSimulado&) = delete;

    [[nodiscard]] EstadoZocalo estado() const override { return estado_; }
    void conectar(const std::string& ip, std::uint32_t puerto) override;
    void escuchar(const std::string& ip, std::uint32_t puerto) override;
    void escucharLocal(const std::string& ruta, std::int64_t grupo) override;
    void reservar() override;
    void aceptar() override;
    [[nodiscard]] std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                        std::size_t indice) override;
    void cerrar() override;
    void abortar() override;
    bool enviar(std::span<const std::uint8_t> bytes) override;
    void agruparEnvios(bool agrupar) override {
        agrupar_ = agrupar;
        if (!agrupar_) pasarCola();
    }
    void frenar(bool freno) override;
    void limitarCola(std::size_t bytes) override { limiteDeCola_ = bytes; }
    [[nodiscard]] std::size_t enCola() const override { return cola_.size(); }
    [[nodiscard]] std::size_t bytesSinConfirmar() const override;
    void fijarPaciencia(std::int64_t ms) override;
    [[nodiscard]] std::uint64_t conexiones() const override { return conexiones_; }
    [[nodiscard]] const std::string& motivo() const override { return motivo_; }
    [[nodiscard]] std::uint32_t puertoLocal() const override { return puerto_; }

    // Called by the network:
    void entregarConexion(IdEnlace enlace);
    void entregarRechazo(std::string motivo);
    /// The same inside `conectar`, which is not followed by an event.
    void noConectar(std::string motivo);
    void entregarDatos(std::span<const std::uint8_t> bytes);
    void entregarCorte();
    void entregarFalla(std::string motivo);
    [[nodiscard]] bool entregarPedido(IdEnlace enlace, const std::string& remoto);

  private:
    void soltar();
    void pasarCola();
    void pedirEnvioAgrupado();

    RedSimulada& red_;
    OyenteDeZocalo& oyente_;
    std::size_t indice_;
    std::function<void(std::function<void()>)> alFinal_;
    EstadoZocalo estado_ = EstadoZocalo::Cerrado;
    IdEnlace enlace_ = 0;
    IdEnlace pedido_ = 0;
    std::uint32_t puerto_ = 0;
    bool reservado_ = false; ///< the port is kept
    bool agrupar_ = false;
    bool agrupado_ = false;
    bool freno_ = false;
    std::uint64_t conexiones_ = 0;
    std::string cola_;
    std::size_t limiteDeCola_ = std::size_t{64} * 1024;
    std::int64_t pacienciaUs_ = 0;
    std::string motivo_;
    std::shared_ptr<ZocaloSimulado*> yo_;
};

} // namespace kv
