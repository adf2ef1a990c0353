// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "engine/arranque.h"
#include "engine/motor.h"
#include "recording/discos.h"
#include "recording/reproductor.h"

#include <string>

namespace kv {

/// A driver that lives again what a recording holds, its script included, without network or files.
/// It must be asked nothing that it did not ask itself then, its clock least of all.
class DriverReproducido {
  public:
    /// Throws CintaMala or CintaCortada, as `correr` does, when the recording makes no sense.
    explicit DriverReproducido(std::string contenido);
    /// From its start to the end of the recording. False: it was cut off in the midst of an entry.
    [[nodiscard]] bool correr();
    /// The program that made the recording, and its version.
    [[nodiscard]] const std::string& programa() const { return cinta_.programa(); }
    [[nodiscard]] Reproductor& bucle() { return bucle_; }
    [[nodiscard]] Motor& motor() { return motor_; }

  private:
    CintaLeida cinta_;
    std::string carpeta_;
    Reproductor bucle_;
    ArchivosReproducidos archivos_;
    Motor motor_;
    ProcesosReproducidos procesos_;
    RespuestasDeDisco respuestas_;
    Arranque arranque_;
};

} // namespace kv
