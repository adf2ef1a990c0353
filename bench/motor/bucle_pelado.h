// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace kv::banco {

struct Medida {
    double usPorIntercambio; ///< processor time of this process
    double usFueraDelNucleo; ///< of that, outside the kernel
    double intercambiosPorSegundo;
};

/// The floor: an epoll loop that sends, receives, checks and stores, and does nothing else. With a
/// pause it sends the next request that many milliseconds after an answer, else at once.
[[nodiscard]] Medida medirBuclePelado(std::uint16_t puerto, int conexiones, double segundos,
                                      double pausaMs);

} // namespace kv::banco
