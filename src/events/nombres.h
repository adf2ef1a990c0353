// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/suceso.h"

#include <optional>
#include <string_view>

namespace kv {

/// The name of a kind of events, for programs: "EnlaceArriba". They do not change.
[[nodiscard]] std::string_view nombreDe(Que que);
[[nodiscard]] std::optional<Que> queDeNombre(std::string_view nombre);

} // namespace kv
