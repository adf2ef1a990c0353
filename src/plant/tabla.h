// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace kv {

/// Records in pieces: it grows without moving any, and where one lies is found from a few words
/// that are always at hand.
template <class Registro>
class EnTrozos {
  public:
    [[nodiscard]] Registro& operator[](std::size_t i) { return trozos_[i / kTrozo][i % kTrozo]; }
    [[nodiscard]] const Registro& operator[](std::size_t i) const {
        return trozos_[i / kTrozo][i % kTrozo];
    }
    [[nodiscard]] std::size_t size() const { return cuantos_; }
    void push_back(Registro registro) {
        if (cuantos_ % kTrozo == 0) trozos_.emplace_back().reserve(kTrozo);
        trozos_.back().push_back(std::move(registro));
        ++cuantos_;
    }
    void clear() {
        trozos_.clear();
        cuantos_ = 0;
    }

  private:
    static constexpr std::size_t kTrozo = 64;
    std::vector<std::vector<Registro>> trozos_;
    std::size_t cuantos_ = 0;
};

/// A table of runtime records, 0 to `limiteSuperior()` - 1. References stay valid while it grows,
/// unless it is kept in a vector.
template <class Registro, class Contenedor = EnTrozos<Registro>>
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
