#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kv {

/// What the driver asks about other processes.
class Procesos {
  public:
    virtual ~Procesos() = default;
    /// Names of all running processes; nothing when they cannot be listed.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> nombres() = 0;
    /// Takes the program's folder for this process until it ends. False when another process holds
    /// it: a previous instance is running.
    [[nodiscard]] virtual bool tomarCarpeta(const std::string& carpeta) = 0;
};

} // namespace kv
