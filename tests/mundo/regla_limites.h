// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"
#include "platform/simulated/archivos_simulados.h"

namespace kv::mundo {

/// Memory is bounded, whatever comes; files are whole lines and whole settings.
class ReglaDeLimites {
  public:
    ReglaDeLimites(Contexto& c, ArchivosSimulados& archivos) : c_(c), archivos_(archivos) {}
    void barrer();
    void alFinal();

  private:
    void registros();

    Contexto& c_;
    ArchivosSimulados& archivos_;
    std::size_t vez_ = 0;
};

} // namespace kv::mundo
