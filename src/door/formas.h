// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/contadores.h"
#include "events/redaccion.h"
#include "link/conexiones.h"
#include "operator/porque.h"
#include "plant/tablas.h"
#include "poll/reloj_de_bloques.h"
#include "text/json.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// The JSON of each kind of record that the local door gives: the members of an object of its own.
class Formas {
  public:
    /// All of them must outlive this.
    Formas(const Tablas& tablas, const Turnos& turnos, const GestorDeConexiones& conexiones,
           const RelojDeBloques& reloj, const Sucesos& sucesos, const Contadores& contadores,
           const PorQue& porQue)
        : tablas_(tablas), turnos_(turnos), conexiones_(conexiones), bloques_(reloj),
          contadores_(contadores), porQue_(porQue), redaccion_(sucesos, tablas) {}

    /// `bit`: -1 for the register itself.
    void variable(Indice bloque, int bit, ObjetoJson& o) const;
    void bloque(Indice bloque, ObjetoJson& o) const;
    void conexion(Indice conexion, ObjetoJson& o) const;
    void cuentas(Indice conexion, ObjetoJson& o) const;
    void suceso(std::uint64_t numero, ObjetoJson& o) const;
    void edad(Indice bloque, ObjetoJson& o) const;

  private:
    /// A moment of the clock that never goes back, as a JSON text; null below 0.
    [[nodiscard]] std::string instante(std::int64_t ms) const;
    [[nodiscard]] std::string estaciones(Indice conexion) const;
    void bytesDe(const Suceso& s, ObjetoJson& o) const;
    static void unas(const Cuentas& c, ObjetoJson& o);

    const Tablas& tablas_;
    const Turnos& turnos_;
    const GestorDeConexiones& conexiones_;
    const RelojDeBloques& bloques_;
    const Contadores& contadores_;
    const PorQue& porQue_;
    Redaccion redaccion_;
};

/// "2026-11-16T07:05:09.012", local.
[[nodiscard]] std::string enIso(const FechaHora& f);
/// The same read back, from the year to the minute at least, or "07:05" of the day of `ahora`, or
/// of the day before if that is still to come; nothing when the text is no such time.
[[nodiscard]] std::optional<FechaHora> deIso(std::string_view texto, const FechaHora& ahora);

} // namespace kv
