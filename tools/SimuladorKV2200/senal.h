// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kv::simulador {

/// How a simulated register changes by itself.
enum class Forma : std::uint8_t {
    Fijo,
    Rampa, ///< 0 to 1000 and again from 0, ten a second
    Seno,  ///< -1000 to 1000, once a minute
    Azar,  ///< 0 to 1000, another value every second
};

/// What a register holds.
struct Senal {
    Forma forma = Forma::Fijo;
    std::int16_t valor = 0; ///< of a fixed one
};

/// "rampa", "seno", "azar", or a whole number from -32768 to 65535 (above 32767 the bits count).
[[nodiscard]] std::optional<Senal> senalDeTexto(std::string_view texto);

/// The register's value at a time since the start, in milliseconds. `semilla` tells registers and
/// runs apart where the value is random.
[[nodiscard]] std::int16_t valorDe(const Senal& senal, std::int64_t ms, std::uint64_t semilla);

/// A well-mixed number out of two.
[[nodiscard]] std::uint64_t mezclar(std::uint64_t a, std::uint64_t b);

} // namespace kv::simulador
