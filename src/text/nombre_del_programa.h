// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace kv {

inline constexpr std::string_view kNombreDelPrograma = "DriverKV2200";

} // namespace kv
