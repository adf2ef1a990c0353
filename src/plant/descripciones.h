// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kv {

/// What people call a variable, and the unit of its value. UTF-8, one line each.
struct Descripcion {
    std::string texto;
    std::string unidad;
    std::uint32_t fila = 0; ///< of the table that says so
    [[nodiscard]] bool vacia() const { return texto.empty() && unidad.empty(); }
};

/// Descriptions, of the variables that have one. They belong to a register or bit, however its
/// address is written: "1.1.0a" and "1.1.A" are one.
class Descripciones {
  public:
    static constexpr std::size_t kMaximo = 1'000'000;

    enum class Resultado : unsigned char { Puesta, NoEsDireccion, Repetida, Demasiadas };
    /// `direccion` is port.PLC.register[.bit], a description there stays as it is.
    Resultado poner(std::string_view direccion, Descripcion descripcion);
    /// Null for an address without a description. Valid until the next `poner`, or as long as this
    /// object.
    [[nodiscard]] const Descripcion* de(std::string_view direccion) const;
    [[nodiscard]] bool ninguna() const { return filas_.empty(); }
    /// Gives a part of its memory back, before it goes as a whole; until then it is of no use.
    /// False: nothing is left.
    bool deshacer();
    /// Each with its address as it was given, in the order in which they came.
    template <class F>
    void recorrer(F tarea) const {
        for (const Fila& f : filas_)
            tarea(f.direccion, f.descripcion);
    }

  private:
    struct Fila {
        std::string direccion;
        Descripcion descripcion;
    };
    [[nodiscard]] static std::optional<std::string> clave(std::string_view direccion);

    std::vector<Fila> filas_;
    std::unordered_map<std::string, std::size_t> porClave_;
};

} // namespace kv
