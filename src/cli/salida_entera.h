// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string_view>

namespace kv {

/// Writes out what waits in `salida`. A program whose output did not arrive whole has not done what
/// it was asked: then a message goes to `errores` and the exit code is 1 instead of 0, unless the
/// program has failed already.
[[nodiscard]] int conSalidaEntera(int codigo, std::string_view programa, std::ostream& salida,
                                  std::ostream& errores);

} // namespace kv
