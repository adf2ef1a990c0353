// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/servicio.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <string>
#include <systemd/sd-daemon.h>

namespace kv {

AvisosDeServicio::AvisosDeServicio(BucleEpoll& bucle)
    : latido_(bucle.propios(), [this] { debeLatir_ = true; }) {
    bucle.alFinalDeVuelta([this] {
        if (debeLatir_) sd_notify(0, "WATCHDOG=1");
        debeLatir_ = false;
    });
}

void AvisosDeServicio::listo() {
    std::uint64_t plazoUs = 0;
    if (sd_watchdog_enabled(0, &plazoUs) > 0)
        latido_.rearmar(std::max<std::int64_t>(static_cast<std::int64_t>(plazoUs / 2000), 1));
    sd_notify(0, "READY=1");
}

void AvisosDeServicio::recargando() {
    timespec ahora{};
    clock_gettime(CLOCK_MONOTONIC, &ahora);
    const auto us = std::int64_t{ahora.tv_sec} * 1'000'000 + ahora.tv_nsec / 1000;
    sd_notify(0, ("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(us)).c_str());
}

void AvisosDeServicio::terminando() { sd_notify(0, "STOPPING=1"); }

} // namespace kv
