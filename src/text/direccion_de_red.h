// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kv {

/// The number of a TCP port, 1 to 65535; nothing for any other text.
[[nodiscard]] std::optional<std::uint16_t> puertoTcpDeTexto(std::string_view texto);

/// Whether the text is an IPv4 address: four numbers 0 to 255, without leading zeros, joined by
/// points.
[[nodiscard]] bool esIPv4(std::string_view texto);

} // namespace kv
