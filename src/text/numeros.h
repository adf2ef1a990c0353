// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// The shortest decimal text that gives the same number again: 1234, not 1234.0; 1.5; -2. Whole
/// numbers below 10^15 are written without exponent. Appends, so that a message needs no
/// temporaries.
void agregarNumero(std::string& destino, double numero);
[[nodiscard]] std::string textoDeNumero(double numero);

/// The number that a text holds: blanks around it, a sign, a decimal point and an exponent are
/// accepted; nothing else, so "1,5", "", "0x10" and "inf" are no numbers.
[[nodiscard]] std::optional<double> numeroDeTexto(std::string_view texto);
/// The same for what people write, who may mean a decimal point by one comma.
[[nodiscard]] std::optional<double> numeroConComa(std::string_view texto);

/// Whether the text is a number in the sense of `numeroDeTexto`.
[[nodiscard]] bool esNumerico(std::string_view texto);

/// A number rounded to the nearest 16-bit integer, halves to even; nothing when it does not fit.
[[nodiscard]] std::optional<std::int16_t> enteroCorto(double numero);
/// The same for 32 bits.
[[nodiscard]] std::optional<std::int32_t> entero(double numero);

/// The value of one to eight hexadecimal digits, without prefix or blanks; nothing for any other
/// text.
[[nodiscard]] std::optional<std::uint32_t> hexadecimal(std::string_view texto);

/// Upper-case hexadecimal digits of a byte, without padding (7 is "7", 232 is "E8").
void agregarHexadecimal(std::string& destino, std::uint8_t byte);
/// Always both of its digits (7 is "07").
void agregarDosCifras(std::string& destino, std::uint8_t byte);

} // namespace kv
