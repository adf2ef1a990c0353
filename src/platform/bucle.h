// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/reloj.h"
#include "platform/temporizador.h"
#include "platform/zocalo.h"

#include <functional>
#include <memory>

namespace kv {

/// The event loop: one thread, sockets before timers at the same instant, timers in due order.
class Bucle {
  public:
    virtual ~Bucle() = default;

    [[nodiscard]] virtual const Reloj& reloj() const = 0;
    /// The timer must not outlive the loop.
    [[nodiscard]] std::unique_ptr<Temporizador> crearTemporizador(std::function<void()> alTic) {
        return std::make_unique<Temporizador>(temporizadores(), std::move(alTic));
    }
    /// `oyente` must outlive the socket, and the socket must not outlive the loop.
    [[nodiscard]] virtual std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                              std::size_t indice) = 0;

    /// Handles what is ready, once, without blocking. Inside a handler that was itself called from
    /// here it does nothing, so handlers nest one deep and no more. Anything may have happened when
    /// it returns: the caller owes nothing any more and uses no reference from before.
    virtual void dejarCorrerPendientes() = 0;

    /// Called after every turn of the loop, in the order of registration, for as long as the loop
    /// lives.
    virtual void alFinalDeVuelta(std::function<void()> tarea) = 0;

    /// Ends the loop's `correr` after the present handler; one that has not begun ends at once.
    virtual void detener() = 0;

    /// All timers of the loop, for what wraps it.
    [[nodiscard]] virtual ColaDeTemporizadores& temporizadores() = 0;
};

} // namespace kv
