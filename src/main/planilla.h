// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

namespace kv {

/// Writes the configuration of a plant's folder as a table for a spreadsheet. What could not be
/// read of it is reported in `errores`. The exit code: 0, or 1 when the table is incomplete.
[[nodiscard]] int exportarPlanilla(const std::string& carpeta, const std::string& archivo,
                                   std::ostream& errores);
/// The way back, for a plant that no driver serves. The configuration before is kept beside it as
/// ".anterior". Nothing is written when a cell is wrong, or does not fit what other rows say,
/// unless the configuration before has that fault too; what is wrong is reported. The exit code: 0,
/// or 1 when nothing was written.
[[nodiscard]] int importarPlanilla(const std::string& carpeta, const std::string& archivo,
                                   std::ostream& errores);

} // namespace kv
