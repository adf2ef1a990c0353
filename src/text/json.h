// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// A text in UTF-8 as JSON has it, quotes and all.
[[nodiscard]] std::string enJson(std::string_view texto);

} // namespace kv
