// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// The version of this build, as "1.0.0".
[[nodiscard]] std::string_view version();
/// What a program calls itself: "DriverKV2200 1.0.0".
[[nodiscard]] std::string conVersion(std::string_view programa);

} // namespace kv
