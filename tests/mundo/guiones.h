// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/regla_escrituras.h"

#include <string>
#include <vector>

namespace kv::mundo {

/// Text number `cual` of the plant engineer's script, nothing for no file: counters, writers,
/// scripts that force reads, that fail, that never end, that eat memory, half a file.
/// `escritores` are the registers that a script writes; it counts its writes in q0, q1, ...
[[nodiscard]] std::string guion(std::uint32_t cual,
                                const std::vector<ReglaDeEscrituras::Escritor*>& escritores,
                                const std::vector<std::string>& forzables);

/// The global in which the script counts its writes of escritor `k`.
[[nodiscard]] std::string contadorDe(std::size_t k);

} // namespace kv::mundo
