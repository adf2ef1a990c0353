// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kv {

/// What the deciphered text begins with when the input cannot be read.
inline constexpr std::string_view kErrorDeCifrado = "ERROR DE ENCRIPT";

/// A uniform random number in [0, 1).
using Azar = std::function<double()>;

/// The digit cipher of the login, on single-byte characters: a key of 20 digits, a filler of 1 to
/// 9, and a unit of up to nine digits for every character.
[[nodiscard]] std::string cifrar(std::string_view texto, const Azar& azar);
/// The unit of one character under the key's first digit, with `d` from 1 to 9.
[[nodiscard]] std::string unidadDeCifrado(unsigned char caracter, char digitoDeClave, int d);

/// The plain text of an enciphered one. What cannot be read, which is nearly anything from outside,
/// gives "ERROR DE ENCRIPT", a line break and what is wrong. Linear in the input's length.
[[nodiscard]] std::string descifrar(std::string_view cifrado);

/// The plain text that a client has to send, for the present hour as "yyyymmddHH".
[[nodiscard]] std::string textoDeClave(std::string_view hora);

} // namespace kv
