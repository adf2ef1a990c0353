// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

namespace kv {

/// One field of an entry: a name in capitals, and any text.
struct CampoDeDiario {
    std::string_view nombre;
    std::string_view valor;
};

/// The system's own log, which keeps entries with fields.
class DiarioDelSistema {
  public:
    virtual ~DiarioDelSistema() = default;
    /// Waits for nobody: an entry that is not taken at once is lost. Fields without a value are
    /// left out.
    virtual void anotar(std::span<const CampoDeDiario> campos) = 0;
};

} // namespace kv
