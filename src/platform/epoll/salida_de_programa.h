// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kv {

/// Runs another program and waits for its end: what it printed. Nothing when it cannot be started,
/// does not end with 0 or prints more than `maximo` bytes; its standard error is ours.
[[nodiscard]] std::optional<std::string> salidaDePrograma(std::vector<std::string> argumentos,
                                                          std::size_t maximo);

} // namespace kv
