// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

namespace kv {

/// Gathers in one archive (tar) all that is needed to say what went wrong in a plant: its files
/// and, where a driver serves it, what that says of itself by its local door, with the stations'
/// frames as a capture. The plant is not touched. `grabacion`: a recording beside those that lie in
/// the folder, or empty. What had to be left out is reported in `errores`. The exit code: 0, or 1
/// when no archive was made.
[[nodiscard]] int hacerEvidencia(const std::string& carpeta, const std::string& archivo,
                                 const std::string& grabacion, std::ostream& errores);

} // namespace kv
