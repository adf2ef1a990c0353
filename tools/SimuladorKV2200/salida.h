// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SimuladorKV2200/fallas.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace kv::simulador {

/// The answers of a link that wait for their moment. They leave in the order of their requests: a
/// slow answer holds back those behind it. Times are milliseconds of one clock that never goes
/// back.
class Salida {
  public:
    void agregar(std::vector<Trozo> trozos, std::int64_t ahoraMs);
    /// The next piece that is due.
    [[nodiscard]] std::optional<std::string> tomar(std::int64_t ahoraMs);
    /// When the next piece is due; nothing when no piece waits.
    [[nodiscard]] std::optional<std::int64_t> proximo() const;
    [[nodiscard]] std::size_t enEspera() const { return pendientes_.size(); }

  private:
    struct Pendiente {
        std::int64_t venceMs;
        std::string bytes;
    };
    std::deque<Pendiente> pendientes_;
    std::int64_t ultimoMs_ = 0;
};

} // namespace kv::simulador
