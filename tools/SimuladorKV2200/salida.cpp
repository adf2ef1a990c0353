// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/salida.h"

#include <algorithm>

namespace kv::simulador {

void Salida::agregar(std::vector<Trozo> trozos, std::int64_t ahoraMs) {
    std::int64_t desde = ahoraMs;
    for (Trozo& t : trozos) {
        ultimoMs_ = std::max(ultimoMs_, desde + t.esperaMs);
        desde = ultimoMs_;
        pendientes_.push_back({ultimoMs_, std::move(t.bytes)});
    }
}

std::optional<std::string> Salida::tomar(std::int64_t ahoraMs) {
    if (pendientes_.empty() || pendientes_.front().venceMs > ahoraMs) return std::nullopt;
    std::string bytes = std::move(pendientes_.front().bytes);
    pendientes_.pop_front();
    return bytes;
}

std::optional<std::int64_t> Salida::proximo() const {
    if (pendientes_.empty()) return std::nullopt;
    return pendientes_.front().venceMs;
}

} // namespace kv::simulador
