// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "log/archivo_log.h"
#include "log/cupo.h"
#include "platform/reloj.h"

#include <string_view>

namespace kv {

/// The lines that a script writes into the daily log. It runs after every answer, so what it writes
/// is bounded: a script must neither fill a disk nor take the log's places from the driver.
class LogDeGuion {
  public:
    static constexpr int kPorMinuto = 60;
    static constexpr std::size_t kLargo = 500; ///< bytes of a line; the rest is cut

    LogDeGuion(ArchivoLog& log, const Reloj& reloj) : log_(log), reloj_(reloj) {}
    void anotar(std::string_view texto);

  private:
    ArchivoLog& log_;
    const Reloj& reloj_;
    Cupo cupo_{kUnMinutoMs};
    bool dicho_ = false; ///< that the minute has had too many
};

} // namespace kv
