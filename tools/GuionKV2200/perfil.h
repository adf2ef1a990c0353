// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/line_sink.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

/// Where a script's time goes, line by line. What a procedure costs counts for its own lines.
class Perfil final : public vbscript::LineSink {
  public:
    void at(int linea) override;
    /// Between two runs nothing is counted.
    void terminar();
    /// The lines that took longest, with their share, time, number of times and text.
    [[nodiscard]] std::string informe(const std::string& guion) const;

  private:
    using Reloj = std::chrono::steady_clock;
    struct Linea {
        std::int64_t ns = 0;
        std::uint64_t veces = 0;
    };
    void cerrar();

    std::vector<Linea> lineas_;
    std::size_t actual_ = 0; ///< 0: no line runs
    Reloj::time_point desde_;
};
