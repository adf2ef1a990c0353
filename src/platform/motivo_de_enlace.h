// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace kv {

/// What a link was at when it failed: one error of the system means different things.
enum class FaseDeEnlace : std::uint8_t { AlConectar, AlEscuchar, Establecido };

/// An error of the system as whoever has to mend the link reads it, in Spanish whatever the
/// language of the machine. One that is not foreseen is told in the system's own words.
[[nodiscard]] std::string motivoDeEnlace(int error, FaseDeEnlace fase);

} // namespace kv
