// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/extremos.h"
#include "platform/zocalo.h"

#include <memory>
#include <netinet/in.h>
#include <string>
#include <vector>

namespace kv {

/// A kernel TCP socket in the epoll loop.
class ZocaloEpoll final : public Zocalo, private Atendido, private AlResolver {
  public:
    ZocaloEpoll(BucleEpoll& bucle, OyenteDeZocalo& oyente, std::size_t indice);
    ~ZocaloEpoll() override;
    ZocaloEpoll(const ZocaloEpoll&) = delete;
    ZocaloEpoll& operator=(const ZocaloEpoll&) = delete;

    [[nodiscard]] EstadoZocalo estado() const override { return estado_; }
    void conectar(const std::string& maquina, std::uint32_t puerto) override;
    void escuchar(const std::string& ip, std::uint32_t puerto) override;
    void escucharLocal(const std::string& ruta, std::int64_t grupo) override;
    void reservar() override;
    void aceptar() override;
    [[nodiscard]] std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                        std::size_t indice) override;
    void cerrar() override;
    void abortar() override;
    bool enviar(std::span<const std::uint8_t> bytes) override;
    void agruparEnvios(bool agrupar) override;
    void frenar(bool freno) override;
    void limitarCola(std::size_t bytes) override { limiteDeCola_ = bytes; }
    [[nodiscard]] std::size_t enCola() const override { return cola_.size() - enviados_; }
    [[nodiscard]] std::size_t bytesSinConfirmar() const override;
    void fijarPaciencia(std::int64_t ms) override;
    [[nodiscard]] std::uint64_t conexiones() const override { return conexiones_; }
    [[nodiscard]] const std::string& motivo() const override { return motivo_; }
    [[nodiscard]] std::uint32_t puertoLocal() const override;

  private:
    void alOcurrir(std::uint32_t sucesos) override;
    void alResolver(const NombreResuelto& resuelto) override;
    void probar();
    void terminarConexion();
    void recibir();
    void atenderPedido();
    void soltarPedido();
    void descansarDeAceptar();
    /// False, and the state is 9, when the loop cannot watch it.
    bool adoptar(int descriptor, EstadoZocalo estado, std::uint32_t sucesos);
    void ponerPaciencia();
    void soltar();
    void soltarDescriptor();
    void soltarReserva();
    [[nodiscard]] bool volverAEscuchar(const sockaddr_in& donde);
    void fallar(std::string motivo);
    void vigilar();
    [[nodiscard]] bool vaciarCola();
    void pedirEnvioAgrupado();

    BucleEpoll& bucle_;
    OyenteDeZocalo& oyente_;
    std::size_t indice_;
    // What an exchange touches lies together.
    BucleEpoll::Registro registro_ = 0;
    int descriptor_ = -1;
    EstadoZocalo estado_ = EstadoZocalo::Cerrado;
    bool agrupar_ = false;
    bool agrupado_ = false;        ///< the end of the turn will send
    bool esperaEscritura_ = false; ///< the kernel tells when it takes more
    bool freno_ = false;
    std::uint64_t conexiones_ = 0;
    std::string cola_; ///< [enviados_, size) still to be sent
    std::size_t enviados_ = 0;
    std::size_t limiteDeCola_ = std::size_t{64} * 1024;

    std::string nombre_; ///< being looked up; empty: no look-up under way
    std::uint32_t puerto_ = 0;
    std::vector<Maquina> maquinas_; ///< to be tried; [0, probadas_) were
    std::size_t probadas_ = 0;
    std::size_t salto_ = 0; ///< where among a name's addresses the next attempt begins
    int pedido_ = -1;       ///< a link waiting for `aceptar`, during `alPedirConexion` only
    int reservado_ = -1;    ///< bound where it has listened
    sockaddr_in lugar_{};   ///< there
    std::string rutaLocal_; ///< the socket file that it listens on; empty: not on a file
    std::int64_t pacienciaMs_ = 0;
    std::string motivo_;
    std::unique_ptr<Temporizador> descanso_; ///< made when it is first wanted
    std::shared_ptr<ZocaloEpoll*> yo_; ///< nulled at the end of life, for tasks that come later
};

} // namespace kv
