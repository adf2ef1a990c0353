// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evidence/vivo.h"
#include "text/fecha.h"

#include <string>
#include <vector>

namespace kv {

inline constexpr std::size_t kRenglonesDelResumen = 20;

/// What the files of a plant have to say for its summary.
struct DatosDelResumen {
    FechaHora hecha; ///< when the bundle is made
    std::string carpeta;
    std::string configuracion;            ///< its path and how much it has
    std::string guion;                    ///< the script's path; empty: the plant has no script
    std::string arranque;                 ///< the log's last entry of a start
    std::vector<std::string> avisos;      ///< the log's last errors and warnings, oldest first
    std::vector<std::string> grabaciones; ///< those in the bundle, and those too large for it
    std::vector<std::string> faltan;      ///< what could not be read
};

/// The summary of a bundle: at most twenty lines, each of at most 200 bytes.
[[nodiscard]] std::string resumenDe(const DatosDelResumen& datos, const Vivo& vivo);

} // namespace kv
