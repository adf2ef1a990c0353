// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/bucle.h"
#include "platform/simulated/red_simulada.h"
#include "platform/vuelta.h"

#include <functional>
#include <memory>
#include <utility>

namespace kv {

/// A clock that moves only when the test says so. The calendar runs along and can be made to jump.
class RelojSimulado final : public Reloj {
  public:
    [[nodiscard]] std::int64_t monotonicoUs() const override { return us_; }
    [[nodiscard]] FechaHora ahora() const override;
    /// Sets the calendar: seconds since 1970, local.
    void ponerFecha(long long segundos) { desdeUs_ = segundos * 1'000'000 - us_; }
    [[nodiscard]] long long segundos() const { return (us_ + desdeUs_) / 1'000'000; }

  private:
    friend class BucleSimulado;
    std::int64_t us_ = 1'000'000;
    std::int64_t desdeUs_ = 1'763'276'709'000'000; // 16 November 2025, 07:05:09
};

/// The loop on a virtual clock. It stops at every due time in due order, arrivals before timers at
/// the same instant, exactly as the real one after a stall.
class BucleSimulado : public Bucle {
  public:
    BucleSimulado();

    [[nodiscard]] const Reloj& reloj() const override { return reloj_; }
    [[nodiscard]] std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                      std::size_t indice) override;
    void dejarCorrerPendientes() override;
    void alFinalDeVuelta(std::function<void()> tarea) override {
        vuelta_.alFinalSiempre(std::move(tarea));
    }
    void detener() override { detenido_ = true; }

    [[nodiscard]] RelojSimulado& relojSimulado() { return reloj_; }
    [[nodiscard]] RedSimulada& red() { return red_; }
    /// Lets the plant live for so long. Ends early only if a handler called `detener`.
    void avanzarUs(std::int64_t us);
    void avanzar(std::int64_t ms) { avanzarUs(ms * 1000); }
    /// Time passes and nobody handles anything: a stalled machine, or a handler that takes long.
    void demorar(std::int64_t ms) { reloj_.us_ += ms * 1000; }
    [[nodiscard]] std::size_t temporizadoresEncendidos() const { return cola_.encendidos(); }
    /// Called after each event and each tick, outermost or nested: the place for invariants.
    void alTerminarCadaSuceso(std::function<void()> vigilar) { vigilar_ = std::move(vigilar); }

    [[nodiscard]] ColaDeTemporizadores& temporizadores() override { return cola_; }

  private:
    [[nodiscard]] std::int64_t proximo();
    void vuelta();
    void atenderLoQueVence();

    RelojSimulado reloj_;
    ColaDeTemporizadores cola_;
    RedSimulada red_;
    std::function<void()> vigilar_;
    Vuelta vuelta_;
    bool detenido_ = false;
};

} // namespace kv
