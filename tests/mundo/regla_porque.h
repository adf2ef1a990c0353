// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"

#include <string>
#include <vector>

namespace kv::mundo {

/// What the driver says of a variable is so. What happened is noted here from the events alone.
class ReglaDePorQue final : public OyenteDeSucesos {
  public:
    explicit ReglaDePorQue(Contexto& c) : c_(c) {}
    void alSuceder(const kv::Suceso& s, std::string_view texto) override;
    /// Asks for some variables, others at every sweep.
    void mirar();

  private:
    struct DeBloque {
        std::int64_t leidaMs = -1;
        std::uint32_t vencidas = 0; ///< since then
    };
    void mirar(Indice i);
    void mirarMalas(Indice i, const std::string& dice);
    [[nodiscard]] static std::uint32_t numeroAntesDe(const std::string& texto,
                                                     std::string_view que);

    Contexto& c_;
    std::vector<DeBloque> bloques_;
    std::vector<std::int64_t> enlaces_; ///< when each came up or was lost last; -1: never
    Indice siguiente_ = 0;
};

} // namespace kv::mundo
