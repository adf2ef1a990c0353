// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SimuladorKV2200/planta.h"
#include "SimuladorKV2200/salida.h"
#include "SimuladorKV2200/solicitudes.h"
#include "SimuladorKV2200/traza.h"
#include "platform/epoll/bucle_epoll.h"

#include <functional>
#include <memory>
#include <string>

namespace kv::simulador {

/// A client's link to one address: requests come in, answers leave in their order when due.
class Enlace final : private Atendido {
  public:
    struct Entorno {
        BucleEpoll& bucle;
        Planta& planta;
        Traza& traza;
        std::int64_t inicioMs; ///< of the simulator, on the loop's clock
    };
    /// Owns `descriptor`. Everything random on this link comes from `azar`. `alTerminar` is called
    /// once, when the link has ended; the object must stay until the turn of the loop is over.
    Enlace(Entorno entorno, std::size_t direccion, std::string nombre, int descriptor, Azar azar,
           std::function<void(Enlace&)> alTerminar);
    ~Enlace() override;
    Enlace(const Enlace&) = delete;
    Enlace& operator=(const Enlace&) = delete;

  private:
    void alOcurrir(std::uint32_t sucesos) override;
    void recibir();
    void atender(const Solicitud& solicitud);
    void enviarVencidos();
    void enviar();
    void terminar(const std::string& porque);
    [[nodiscard]] std::int64_t ahoraMs() const;

    Entorno e_;
    std::size_t direccion_;
    std::string nombre_;
    int descriptor_;
    BucleEpoll::Registro registro_;
    Azar azar_;
    std::function<void(Enlace&)> alTerminar_;
    Solicitudes solicitudes_;
    Salida salida_;
    std::string porEnviar_; ///< due, and not yet taken by the kernel
    bool esperaEscritura_ = false;
    std::unique_ptr<Temporizador> tmrSalida_;
    std::unique_ptr<Temporizador> tmrCorte_;
};

} // namespace kv::simulador
