// SPDX-License-Identifier: Apache-2.0
#include "platform/rueda.h"

#include <bit>
#include <utility>

namespace kv {

void Rueda::poner(std::uint32_t entrada, std::int64_t ranura) {
    const std::size_t i = indice(ranura);
    ranuras_[i].push_back(entrada);
    ocupadas_[i / 64] |= std::uint64_t{1} << i % 64;
}

void Rueda::sacarUltima(std::int64_t ranura) {
    ranuras_[indice(ranura)].pop_back();
    if ((*this)[ranura].empty()) static_cast<void>(vaciar(ranura));
}

Rueda::Entradas Rueda::vaciar(std::int64_t ranura) {
    const std::size_t i = indice(ranura);
    ocupadas_[i / 64] &= ~(std::uint64_t{1} << i % 64);
    return std::exchange(ranuras_[i], {});
}

std::int64_t Rueda::ocupada(std::int64_t desde, std::int64_t hasta) const {
    while (desde < hasta) {
        const std::size_t i = indice(desde);
        const std::uint64_t desdeEsta = ocupadas_[i / 64] >> i % 64;
        if (desdeEsta == 0) {
            desde += static_cast<std::int64_t>(64 - i % 64);
            continue;
        }
        desde += std::countr_zero(desdeEsta);
        return desde < hasta ? desde : -1;
    }
    return -1;
}

} // namespace kv
