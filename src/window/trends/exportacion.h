// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/fecha.h"
#include "window/trends/registro.h"

#include <QString>

namespace kv {

/// What is kept between two instants as a CSV for a spreadsheet in Spanish (semicolons, decimal
/// commas): a line for each instant at which any of the variables changed, and for each variable
/// its value and whether it was OK then. `hora` is the calendar's at `hastaMs`.
[[nodiscard]] QString csvDe(const RegistroDeTendencias& registro, std::int64_t desdeMs,
                            std::int64_t hastaMs, const FechaHora& hora);

} // namespace kv
