// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace kv {

/// The file of a socket of this machine. Its path may be longer than an address of such a socket
/// holds: it is reached by its folder then. Failures leave errno.
class ArchivoDeZocalo {
  public:
    explicit ArchivoDeZocalo(std::string ruta) : ruta_(std::move(ruta)) {}
    ~ArchivoDeZocalo();
    ArchivoDeZocalo(const ArchivoDeZocalo&) = delete;
    ArchivoDeZocalo& operator=(const ArchivoDeZocalo&) = delete;

    /// Takes a socket file away that was left there; false when it cannot, or when another kind of
    /// file is there.
    [[nodiscard]] bool liberar() const;
    /// Makes the file, its owner's alone.
    [[nodiscard]] bool atar(int descriptor);
    /// Gives the file to a group too; below 0 no group is meant, which succeeds.
    [[nodiscard]] bool darAlGrupo(std::int64_t grupo) const;
    /// Connects; as the system's call does, without blocking where the socket does not.
    [[nodiscard]] bool conectar(int descriptor);

  private:
    template <class F>
    [[nodiscard]] bool conDireccion(F hacer);

    std::string ruta_;
    int carpeta_ = -1;
};

} // namespace kv
