// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

namespace kv {

/// Makes room for a file that is to be written: what it holds now is kept beside it with
/// ".anterior" behind its name. False, which is reported in `errores`: nothing may be written
/// there, as it is one of the files of the plant in `carpeta` (settings, configuration, project,
/// script, descriptions), by whatever path, or what it holds cannot be kept.
[[nodiscard]] bool guardarLoDeAntes(const std::string& carpeta, const std::string& archivo,
                                    std::ostream& errores);

} // namespace kv
