// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/dos_idiomas.h"
#include "mundo/contexto.h"

#include <string>
#include <vector>

namespace kv::mundo {

/// What the driver says of a variable is so. What happened is noted here from the events alone.
class ReglaDePorQue final : public OyenteDeSucesos {
  public:
    explicit ReglaDePorQue(Contexto& c) : c_(c), ingles_(enIngles(c.motor.porQue)) {}
    void alSuceder(const kv::Suceso& s, std::string_view texto) override;
    void alPedirEnlace(std::size_t n);
    /// Asks for some variables, others at every sweep, and for all connections that are not up.
    void mirar();

  private:
    struct DeBloque {
        std::int64_t leidaMs = -1;
        std::uint32_t vencidas = 0; ///< since then
    };
    /// How an attempt to connect may end, and what comes of it when it succeeds.
    struct Intento {
        std::int64_t us = 0;
        Llegada llegada = Llegada::Entra;
    };
    struct DeEnlace {
        std::int64_t desdeMs = -1; ///< when it came up or was lost last; -1: never did
        bool arriba = false;       ///< as far as the supervision knows
        std::vector<Intento> intentos;
        std::int64_t loCortoUs = -1;   ///< the driver, for a write that was given up
        std::int64_t noCallabaUs = -1; ///< the driver, because the line was not quiet
    };
    void mirar(Indice i);
    void mirarMalas(Indice i, const std::string& dice);
    void mirarSinEnlace(Indice n);
    [[nodiscard]] bool pudoSer(Indice n, std::string_view motivo) const;
    [[nodiscard]] bool pudoPerderse(Indice n, std::string_view motivo, std::int64_t desdeUs) const;
    [[nodiscard]] static std::uint32_t numeroAntesDe(const std::string& texto,
                                                     std::string_view que);

    Contexto& c_;
    PorQue ingles_; ///< says the same in English
    std::vector<DeBloque> bloques_;
    std::vector<DeEnlace> enlaces_;
    Indice siguiente_ = 0;
};

} // namespace kv::mundo
