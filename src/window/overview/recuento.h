// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/porque.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

/// How a station stands.
struct EstacionContada {
    Indice conexion;
    Indice estacion;
    ResumenDeEstacion resumen;

    [[nodiscard]] bool hayQueMirar() const {
        return resumen.callada || resumen.bad > 0 || resumen.viejas > 0;
    }
};

/// How the whole plant stands, counted in slices: a look at a hundred thousand variables at once
/// would be felt by the polling.
class Recuento {
  public:
    /// Both must outlive this.
    Recuento(const Tablas& tablas, const PorQue& porQue) : tablas_(tablas), porQue_(porQue) {}

    /// Looks at the next stations, `kPorVez` variables of theirs or so. True when that was the last
    /// of a round, whose figures are the ones given from now on.
    bool avanzar();
    /// Looks at what is left of a round, or at all.
    void completar();

    [[nodiscard]] const std::vector<EstacionContada>& estaciones() const { return estaciones_; }
    struct Total {
        std::size_t ok = 0, bad = 0, viejas = 0; ///< variables that are polled
        std::size_t calladas = 0;                ///< stations
    };
    [[nodiscard]] const Total& total() const { return total_; }
    /// "sin respuesta desde 03:12:05 (4)" while one of the connection's stations is silent.
    [[nodiscard]] std::string sinRespuesta(Indice conexion) const;

  private:
    static constexpr std::size_t kPorVez = 12'500;

    const Tablas& tablas_;
    const PorQue& porQue_;
    std::vector<EstacionContada> estaciones_;
    std::vector<EstacionContada> contando_;   ///< of the round that is under way
    std::vector<std::size_t> primeraCallada_; ///< by connection: in `estaciones_`, or its size
    Indice conexion_ = 0;                     ///< where the round is
    Indice estacion_ = 0;
    Total total_;
};

} // namespace kv
