// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

namespace kv {

/// Makes room for a file that is to be written: what it holds now is kept beside it with
/// ".anterior" behind its name, and `archivo` becomes the path of the file itself where a link
/// leads to it. False, which is reported in `errores`: nothing may be written there, as it is no
/// file but a device, a pipe, a socket or a folder; or one of the files of the plant in `carpeta`
/// (settings, configuration, project, script, descriptions), by whatever path; or what it holds
/// cannot be kept.
[[nodiscard]] bool prepararSalida(const std::string& carpeta, std::string& archivo,
                                  std::ostream& errores);

} // namespace kv
