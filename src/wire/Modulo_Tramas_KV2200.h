// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kv {

/// The bytes of a request to a station.
using Solicitud = std::array<std::uint8_t, 7>;

inline constexpr std::size_t kLargoSolicitud = std::tuple_size_v<Solicitud>;
inline constexpr std::size_t kLargoRespuesta = 8;
inline constexpr std::uint8_t kMarcaRespuesta = 0x07;
/// What a request wants is its byte 0.
inline constexpr std::uint8_t kLeer = 0x52;
inline constexpr std::uint8_t kEscribir = 0x57;

/// What a byte of a request can name: registers are 0 to FF, stations 0 to 99 in decimal.
inline constexpr std::uint32_t kUltimoRegistro = 0xFF;
inline constexpr int kUltimoIndice = 99;

/// The register's byte; nothing where the text is no hexadecimal number or does not fit.
[[nodiscard]] std::optional<std::uint8_t> byteDeRegistro(std::string_view texto);
/// The station's byte: the digits of its index, read as hexadecimal ones. Nothing for a number that
/// is no index.
[[nodiscard]] std::optional<std::uint8_t> byteDeEstacion(double indice);

using Respuesta = std::array<std::uint8_t, kLargoRespuesta>;

/// The request that reads one register. `direccion` is the register as hexadecimal text, `estacion`
/// the station's index in decimal. Nothing when either does not fit its byte.
[[nodiscard]] std::optional<Solicitud> armarTramaLectura(std::string_view direccion,
                                                         std::string_view estacion);

/// The request that writes one register. `valor` is a whole number from -32768 to 65535; a negative
/// one travels as the 16-bit number of the same bits. Nothing for any other value.
[[nodiscard]] std::optional<Solicitud> armarTramaEscritura(std::string_view direccion,
                                                           std::string_view estacion, double valor);

/// Whether byte 0 is the marker and the last byte is the sum of those between, modulo 256.
[[nodiscard]] bool verificarTramaRespuesta(std::span<const std::uint8_t> trama);

/// The register that a valid answer carries: -32768 to 32767.
[[nodiscard]] std::int16_t valorDeRespuesta(std::span<const std::uint8_t, kLargoRespuesta> trama);

/// Sum of the bytes modulo 256.
[[nodiscard]] std::uint8_t sumaDeControl(std::span<const std::uint8_t> bytes);

/// "[52][01]": every byte in brackets, in upper-case hexadecimal. Bytes 0 to 9 are padded to two
/// digits, A to F are not.
[[nodiscard]] std::string trazaDeTrama(std::span<const std::uint8_t> trama);

} // namespace kv
