// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/mensajes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv::cliente {

/// A variable as the driver tells of it; texts on the wire's bytes.
struct Variable {
    std::string direccion;
    std::string valor;
    std::string estado; ///< "6" or "13"
};

/// What a message of the driver is.
struct Mensaje {
    enum class Clase : std::uint8_t { Aceptada, Escrita, KeepAlive, Eco, FinDeSincronismo, Datos };
    Clase clase = Clase::Datos;
    std::vector<Variable> variables; ///< of Datos
};

/// Takes the driver's messages out of a stream that may be cut anywhere. Bytes that are no message
/// are passed over; what may still become one is kept, within a bound.
class Lector {
  public:
    explicit Lector(Separadores separadores) : separadores_(std::move(separadores)) {}
    [[nodiscard]] std::vector<Mensaje> agregar(std::string_view bytes);

  private:
    [[nodiscard]] Mensaje datos(std::string_view carga) const;

    Separadores separadores_;
    std::string pendiente_;
};

} // namespace kv::cliente
