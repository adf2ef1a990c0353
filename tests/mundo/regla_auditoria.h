// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"
#include "platform/simulated/archivos_simulados.h"

#include <deque>
#include <string>
#include <string_view>

namespace kv::mundo {

/// The record of writes on the disk holds what the world knows to have happened, line by line and
/// in order: nothing else, nothing twice, and nothing missing but what it says itself to be
/// missing.
class ReglaDeAuditoria {
  public:
    ReglaDeAuditoria(Contexto& c, ArchivosSimulados& archivos) : c_(c), archivos_(archivos) {}

    /// A line that has to come: its fields from the second on.
    void esperar(std::string_view origen, std::string_view direccion, std::string_view anterior,
                 double valor, std::string_view fin);
    /// Reads and removes the files that are there. To be called before the calendar jumps.
    void leer();
    /// The program has ended: all is on the disk or was said to be missing.
    void alFinal();

  private:
    void linea(std::string_view linea, std::string_view dia);
    bool consumir(std::string_view cuerpo);

    Contexto& c_;
    ArchivosSimulados& archivos_;
    std::deque<std::string> esperadas_;
    std::string ultima_;
    std::uint64_t faltan_ = 0, avisadas_ = 0; ///< lines that are missing, that are said to be
};

} // namespace kv::mundo
