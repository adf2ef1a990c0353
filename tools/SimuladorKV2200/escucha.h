// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/epoll/bucle_epoll.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kv::simulador {

/// A listening TCP socket that hands out every link that comes and goes on listening: a burst of
/// thousands of clients is taken without refusing any.
class Escucha final : private Atendido {
  public:
    /// Called with the descriptor of every new link, which it then owns.
    using AlLlegar = std::function<void(int descriptor)>;
    Escucha(BucleEpoll& bucle, AlLlegar alLlegar) : bucle_(bucle), alLlegar_(std::move(alLlegar)) {}
    ~Escucha() override;
    Escucha(const Escucha&) = delete;
    Escucha& operator=(const Escucha&) = delete;

    /// Empty when it listens, else why it cannot.
    [[nodiscard]] std::string abrir(const std::string& ip, std::uint16_t puerto);
    /// The local port, also when a free one was asked for.
    [[nodiscard]] std::uint16_t puerto() const { return puerto_; }

  private:
    void alOcurrir(std::uint32_t sucesos) override;
    void rechazarUno();

    BucleEpoll& bucle_;
    AlLlegar alLlegar_;
    BucleEpoll::Registro registro_ = 0;
    int descriptor_ = -1;
    int reserva_ = -1; ///< given up for a moment when the process has no descriptor left
    std::uint16_t puerto_ = 0;
};

/// Raises the number of descriptors that the process may have to the most it is allowed.
void permitirMuchosDescriptores();

} // namespace kv::simulador
