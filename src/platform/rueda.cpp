// SPDX-License-Identifier: Apache-2.0
#include "platform/rueda.h"

#include <bit>

namespace kv {

void Rueda::poner(EnRueda& e, std::int64_t ranura) {
    const std::size_t i = indice(ranura);
    EnRueda*& ultimo = ultimos_[i];
    e.ranura = ranura;
    if (ultimo == nullptr) {
        e.anterior = e.siguiente = &e;
        ocupadas_[i / 64] |= std::uint64_t{1} << i % 64;
    } else {
        e.anterior = ultimo;
        e.siguiente = ultimo->siguiente;
        e.siguiente->anterior = ultimo->siguiente = &e;
    }
    ultimo = &e;
}

void Rueda::sacar(EnRueda& e) {
    const std::size_t i = indice(e.ranura);
    if (e.siguiente == &e) {
        ultimos_[i] = nullptr;
        ocupadas_[i / 64] &= ~(std::uint64_t{1} << i % 64);
        return;
    }
    e.anterior->siguiente = e.siguiente;
    e.siguiente->anterior = e.anterior;
    if (ultimos_[i] == &e) ultimos_[i] = e.anterior;
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
