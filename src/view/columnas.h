// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace kv {

/// The columns of the lists, in the order in which Vista names them.
namespace de_variables {
inline constexpr std::size_t kDireccion = 0, kValor = 1, kEstado = 2, kFechaHora = 3, kNombre = 4;
}
namespace de_bloques {
inline constexpr std::size_t kDireccion = 0, kNivel = 1, kScan = 2, kHabilitado = 3, kNota = 4;
}
namespace de_conexiones {
inline constexpr std::size_t kPuerto = 0, kDireccion = 1, kEstado = 2, kEstaciones = 3,
                             kBaseDeTiempo = 4, kIntervalos = 5, kSolicitudes = 6, kTiempoFuera = 7;
inline constexpr const char* kConectado = "Conectado OK"; ///< the state of a link that is up
} // namespace de_conexiones

} // namespace kv
