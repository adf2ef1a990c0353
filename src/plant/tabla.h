#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace kv {

/// A table of runtime records. It always ends with one empty spare record: a new record is written
/// into the spare and the table grows by one, so the live records are 0 to `limiteSuperior()` - 1.
/// References stay valid while the table grows, unless it is kept in a vector.
template <class Registro, class Contenedor = std::deque<Registro>>
class Tabla {
  public:
    Tabla() : registros_(1) {}

    [[nodiscard]] Registro& operator[](std::size_t i) { return registros_[i]; }
    [[nodiscard]] const Registro& operator[](std::size_t i) const { return registros_[i]; }
    /// Index of the spare record, which is also the number of live ones.
    [[nodiscard]] std::size_t limiteSuperior() const { return registros_.size() - 1; }
    [[nodiscard]] bool vive(double i) const {
        return i >= 0 && i < static_cast<double>(limiteSuperior());
    }
    /// Writes the record into the spare and adds a new spare; gives the record's index.
    std::size_t agregar(Registro registro) {
        const std::size_t i = limiteSuperior();
        registros_.back() = std::move(registro);
        registros_.emplace_back();
        return i;
    }
    /// The spare becomes a live record as it stands, and a new spare is added.
    void crecer() { registros_.emplace_back(); }
    /// Back to a single spare record.
    void vaciar() {
        registros_.clear();
        registros_.emplace_back();
    }

  private:
    Contenedor registros_;
};

} // namespace kv
