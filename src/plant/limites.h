// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace kv {

/// What a plant may be configured with. Times are seconds.
namespace limite {
inline constexpr double kCantidad = 10'000; ///< registers of a configured block
inline constexpr double kNivel = 10'000;
inline constexpr double kTiempo = 86400.0 * 365; ///< of a scan or a rest
inline constexpr double kTiempoFuera = 3600;
inline constexpr double kTiempoMinimo = 0.001; ///< of any that is not 0: what a timer can do
inline constexpr double kReintentos = 1000;
inline constexpr double kRegistro = 65535;              ///< as written by people
inline constexpr int kBits = 16;                        ///< of a register
inline constexpr std::size_t kDireccionEnMensaje = 200; ///< bytes of one that came from outside
} // namespace limite

/// What a port has whose configuration does not say, or says what would stop a timer for ever.
namespace de_puerto {
inline constexpr double kTiempoFuera = 5;
inline constexpr double kScan = 5;
inline constexpr double kReintentos = 3;
inline constexpr double kReconeccion = 30;
inline constexpr double kTipoPlc = 5;
} // namespace de_puerto

/// What a station has whose configuration does not say.
namespace de_estacion {
inline constexpr std::string_view kIp = "127.0.0.1";
inline constexpr std::string_view kPuertoTcp = "502";
} // namespace de_estacion

/// Seconds that a timer can run and that end within a lifetime.
[[nodiscard]] constexpr bool esTiempo(double segundos, double maximo = limite::kTiempo) {
    return segundos >= limite::kTiempoMinimo && segundos <= maximo;
}
/// 0: read when the link comes up and when forced.
[[nodiscard]] constexpr bool esScan(double segundos) { return segundos == 0 || esTiempo(segundos); }

} // namespace kv
