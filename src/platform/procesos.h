// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kv {

/// What the driver asks about other processes.
class Procesos {
  public:
    virtual ~Procesos() = default;
    /// Takes the program's folder for this process until it ends. False when another process holds
    /// it: a previous instance is running.
    [[nodiscard]] virtual bool tomarCarpeta(const std::string& carpeta) = 0;
    /// Lets others see, until this process ends or serves another file, that this configuration is
    /// being served: by the file itself, whatever links lead to it. Several may serve one file.
    virtual void atenderConfiguracion(const std::string& /*ruta*/) {}
};

} // namespace kv
