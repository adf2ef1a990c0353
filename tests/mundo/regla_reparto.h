// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"

#include <vector>

namespace kv::mundo {

/// A dead station leaves its neighbours on the line their share of it. What the dead cost is all
/// the time in which nobody else was being asked, was answered, or could have been asked.
class ReglaDeReparto {
  public:
    explicit ReglaDeReparto(Contexto& c) : c_(c) {}

    /// A read was accepted.
    void alContestar(Indice bloque);
    /// After every event.
    void mirar();
    /// Before the dead are brought back.
    void alFinal();

  private:
    enum class De : std::uint8_t { Nadie, Vivos, Muertos };
    struct Cuenta {
        std::int64_t desdeUs = -1;
        EstadoDeTurno visto = EstadoDeTurno::Libre;
        bool contestada = false;
        De pausaDe = De::Nadie;
        std::int64_t perdidoUs = 0, totalUs = 0;
    };
    void mirar(std::size_t n, Cuenta& cuenta);
    [[nodiscard]] double admitido(const PlanDeConexion& p) const;

    Contexto& c_;
    std::vector<Cuenta> cuentas_;
};

} // namespace kv::mundo
