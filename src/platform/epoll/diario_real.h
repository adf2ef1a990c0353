// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/diario.h"

#include <string>

namespace kv {

/// The journal of the service manager, by its own datagrams. Not by its library, whose calls wait
/// while the journal does not keep up.
class DiarioReal final : public DiarioDelSistema {
  public:
    explicit DiarioReal(std::string ruta = "/run/systemd/journal/socket");
    ~DiarioReal() override;
    DiarioReal(const DiarioReal&) = delete;
    DiarioReal& operator=(const DiarioReal&) = delete;
    void anotar(std::span<const CampoDeDiario> campos) override;

    /// Whether this process runs under a service manager that takes its standard error into its
    /// journal: then whoever looks for it looks there.
    [[nodiscard]] static bool hay();

  private:
    std::string ruta_;
    int zocalo_;
};

} // namespace kv
