// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/problema.h"
#include "config/validacion.h"
#include "engine/motor.h"
#include "platform/procesos.h"

#include <memory>

namespace kv {

/// Builds the runtime records from the configuration that was read: ports, then stations, then
/// blocks. Records that the check has found to be unusable are passed over.
void levantarConfiguracion(Modelo& modelo, const ListasDeConfiguracion& listas,
                           const Validacion& validacion);

/// Start-up and the life of the program's visibility. One per process.
class Arranque {
  public:
    Arranque(Motor& motor, Procesos& procesos);

    /// False when a driver runs already in this folder: the message was shown and VER=1 written,
    /// nothing else. Drivers of other folders do not count.
    [[nodiscard]] bool soyElUnico();
    /// The whole sequence, from the configuration to the supervision of the connections.
    void arrancar();
    /// The last step of the sequence: the client's server begins to listen.
    void abrirServidor();

  private:
    void informar(const Problemas& problemas);
    void anotarPlanta();
    void anotarAjustes();
    void Timer_VER_Timer();

    Motor& motor_;
    Procesos& procesos_;
    std::unique_ptr<Temporizador> Timer_VER_;
    double problemas_ = 0; ///< of the configuration
    std::string ajustesAntes_;
    std::uint64_t ajustesVistos_ = 0; ///< as Ajustes counts whole contents
    bool ajustesLeidos_ = false;
};

} // namespace kv
