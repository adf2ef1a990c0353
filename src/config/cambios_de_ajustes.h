// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kv {

/// The settings that differ in meaning between two contents of the settings file, each as "KEY:
/// before -> now". One that is not there counts as its default; VER, which the driver itself
/// writes, does not count as a change.
[[nodiscard]] std::vector<std::string> cambiosDeAjustes(const std::string& antes,
                                                        const std::string& ahora);

} // namespace kv
