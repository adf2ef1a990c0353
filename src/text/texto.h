// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// Blanks, tabs and line ends taken off both ends.
[[nodiscard]] std::string_view recortar(std::string_view texto);

/// Letter case is that of ASCII: tags, keys and file names of the field use nothing else.
[[nodiscard]] std::string minusculas(std::string_view texto);
[[nodiscard]] bool igualSinCaja(std::string_view a, std::string_view b);
/// Below 0, 0 or above 0, as the first stands before, with or behind the second.
[[nodiscard]] int compararSinCaja(std::string_view a, std::string_view b);

/// Position of the first `parte` at or after `desde` whatever its letter case, or npos. An empty
/// `parte` is found nowhere. Linear in the text for the short patterns it is used with.
[[nodiscard]] std::size_t buscarSinCaja(std::string_view texto, std::string_view parte,
                                        std::size_t desde = 0);

/// Every `parte`, whatever its letter case, replaced from left to right. Linear.
[[nodiscard]] std::string reemplazarSinCaja(std::string_view texto, std::string_view parte,
                                            std::string_view nuevo);

/// The pieces between separators; a text without any is one piece. Views into `texto`.
[[nodiscard]] std::vector<std::string_view> partir(std::string_view texto, char separador);

/// The first `largo` bytes of UTF-8, or a few less: no character is cut in two.
[[nodiscard]] std::string_view comienzo(std::string_view texto, std::size_t largo);

/// Carriage-return-and-line-feed pairs, then single ones, each become one blank.
[[nodiscard]] std::string enUnaLinea(std::string_view texto);

} // namespace kv
