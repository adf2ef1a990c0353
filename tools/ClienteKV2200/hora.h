// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kv::cliente {

/// The present moment as ISO 8601 with milliseconds and zone: "2026-11-16T13:05:22.123-03:00".
[[nodiscard]] std::string horaIso();

/// The present date and hour and this machine's zone, for people: "16/11/2026 13 h, zona UTC-03:00
/// (-03)".
[[nodiscard]] std::string horaYZona();

} // namespace kv::cliente
