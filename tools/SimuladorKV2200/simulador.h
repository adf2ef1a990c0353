// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SimuladorKV2200/enlace.h"
#include "SimuladorKV2200/escucha.h"
#include "SimuladorKV2200/linea_de_orden.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace kv::simulador {

/// The simulated plant on its sockets.
class Simulador {
  public:
    Simulador(BucleEpoll& bucle, const Orden& orden, std::ostream& salida);

    /// Opens every address and prints "Escuchando IP:PORT" for each. False, and why in `errores`,
    /// when one cannot be opened.
    [[nodiscard]] bool abrir(const std::vector<Escuchada>& escuchadas, std::ostream& errores);

  private:
    struct Direccion {
        std::unique_ptr<Escucha> escucha;
        std::string nombre;
        std::uint64_t enlaces = 0; ///< that came so far
    };
    void alLlegar(std::size_t direccion, int descriptor);
    void alTerminarVuelta();

    BucleEpoll& bucle_;
    std::ostream& salida_;
    Planta planta_;
    Traza traza_;
    std::int64_t inicioMs_;
    std::vector<Direccion> direcciones_;
    std::unordered_map<Enlace*, std::unique_ptr<Enlace>> enlaces_;
    std::vector<std::unique_ptr<Enlace>> terminados_; ///< until the turn of the loop is over
};

} // namespace kv::simulador
