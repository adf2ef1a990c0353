// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace kv {

/// What a text can be that says where a machine is.
enum class ClaseDeMaquina : std::uint8_t { Ninguna, IPv4, IPv6, Nombre };

/// IPv4 is four numbers without leading zeros; IPv6 stands without brackets and may name its
/// interface ("fe80::1%eth0"). A name is what a resolver can be asked for. Texts that only look
/// like numbers, as "10.1" or "010.0.0.1", are neither: resolvers take them for addresses that
/// nobody meant.
[[nodiscard]] ClaseDeMaquina claseDeMaquina(std::string_view texto);

} // namespace kv
