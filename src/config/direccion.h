// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// The number of a TCP port, 1 to 65535; nothing for any other text.
[[nodiscard]] std::optional<std::uint16_t> puertoTcpDeTexto(std::string_view texto);

/// Whether the text is an IPv4 address: four numbers 0 to 255, without leading zeros, joined by
/// points.
[[nodiscard]] bool esIPv4(std::string_view texto);

/// What two stations must have in common to share a connection: the IP whatever its letter case,
/// and the TCP port as a number, so that "0502" is "502".
[[nodiscard]] std::string claveDeConexion(std::string_view ip, std::string_view puertoTCP);

} // namespace kv
