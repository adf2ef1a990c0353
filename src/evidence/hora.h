// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/fecha.h"

#include <cstdint>
#include <string>

namespace kv {

/// Seconds since 1970, as the world counts them, of a time of this machine's zone. Of an hour that
/// is there twice it may be either.
[[nodiscard]] std::int64_t segundosUniversales(const FechaHora& local);
/// The zone of such a time: "CET (UTC+0100)".
[[nodiscard]] std::string zonaDe(const FechaHora& local);

} // namespace kv
