// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace kv {

/// A table of runtime records, 0 to `limiteSuperior()` - 1. References stay valid while it grows,
/// unless it is kept in a vector.
template <class Registro, class Contenedor = std::deque<Registro>>
class Tabla {
  public:
    [[nodiscard]] Registro& operator[](std::size_t i) { return registros_[i]; }
    [[nodiscard]] const Registro& operator[](std::size_t i) const { return registros_[i]; }
    /// The number of records.
    [[nodiscard]] std::size_t limiteSuperior() const { return registros_.size(); }
    [[nodiscard]] bool vive(double i) const {
        return i >= 0 && i < static_cast<double>(limiteSuperior());
    }
    /// Gives the record's index.
    std::size_t agregar(Registro registro) {
        registros_.push_back(std::move(registro));
        return registros_.size() - 1;
    }
    void vaciar() { registros_.clear(); }

  private:
    Contenedor registros_;
};

} // namespace kv
