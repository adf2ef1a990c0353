// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/bucle_simulado.h"

#include "platform/simulated/zocalo_simulado.h"

#include <algorithm>

namespace kv {

FechaHora RelojSimulado::ahora() const {
    const std::int64_t us = us_ + desdeUs_;
    return fechaDesdeSegundos(us / 1'000'000, static_cast<int>(us / 1000 % 1000));
}

BucleSimulado::BucleSimulado() : cola_([this] { return reloj_.us_; }), red_(reloj_) {}

std::unique_ptr<Zocalo> BucleSimulado::crearZocalo(OyenteDeZocalo& oyente, std::size_t indice) {
    return std::make_unique<ZocaloSimulado>(
        red_, oyente, indice,
        [this](std::function<void()> tarea) { vuelta_.alFinalUnaVez(std::move(tarea)); });
}

std::int64_t BucleSimulado::proximo() {
    const std::int64_t a = red_.proximo();
    const std::int64_t b = cola_.proximo();
    if (a < 0 || b < 0) return std::max(a, b);
    return std::min(a, b);
}

void BucleSimulado::avanzarUs(std::int64_t us) {
    detenido_ = false;
    const std::int64_t fin = reloj_.us_ + us;
    while (!detenido_) {
        const std::int64_t p = proximo();
        if (p < 0 || p > fin) break;
        reloj_.us_ = std::max(reloj_.us_, p);
        vuelta();
    }
    if (!detenido_) reloj_.us_ = std::max(reloj_.us_, fin);
}

void BucleSimulado::vuelta() {
    {
        const Vuelta::Nivel nivel(vuelta_);
        atenderLoQueVence();
    }
    vuelta_.terminar();
}

void BucleSimulado::dejarCorrerPendientes() {
    if (!vuelta_.admiteOtroNivel()) return;
    const Vuelta::Nivel nivel(vuelta_);
    atenderLoQueVence();
}

void BucleSimulado::atenderLoQueVence() {
    while (!detenido_ && red_.entregar()) {
        if (vigilar_) vigilar_();
    }
    const std::int64_t ahora = reloj_.us_; // a handler that takes long ticks nothing it has armed
    while (!detenido_ && cola_.ticar(ahora)) {
        if (vigilar_) vigilar_();
    }
}

} // namespace kv
