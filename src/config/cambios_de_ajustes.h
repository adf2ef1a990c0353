// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kv {

/// The settings that mean something else in one content of the settings file than in another, each
/// as "KEY: before -> now". One that is not there counts as its default; VER, which the driver
/// itself writes, is none.
[[nodiscard]] std::vector<std::string> cambiosDeAjustes(const std::string& antes,
                                                        const std::string& ahora);

} // namespace kv
