// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace kv {

/// Asks for memory that will be wanted in a moment, so that nobody waits for it then. It changes
/// nothing, and any address will do.
inline void acercar(const void* desde, std::size_t bytes) {
    constexpr std::size_t kLinea = 64;
    for (std::size_t k = 0; k < bytes; k += kLinea)
        __builtin_prefetch(static_cast<const char*>(desde) + k);
}

/// The part of a record that lies before one of its members.
template <class Registro, class Miembro>
void acercarHasta(const Registro& registro, const Miembro& fin) {
    acercar(&registro,
            static_cast<std::size_t>(reinterpret_cast<const char*>(&fin) -       // NOLINT
                                     reinterpret_cast<const char*>(&registro))); // NOLINT
}

} // namespace kv
