// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// What a supervisory client may have done to the plant. Any of these may let events run, and may
/// throw: the rest of the client's arrival is then lost, with a log entry.
class OrdenesDelCliente {
  public:
    virtual ~OrdenesDelCliente() = default;
    /// `origen` says who wants it: "cliente 10.0.0.9:50000". `direccion` comes from outside.
    virtual void escribirDireccion(std::string_view direccion, double valor,
                                   std::string_view origen) = 0;
    /// A write that the door does not let through, for the operator and the records.
    virtual void rechazarEscritura(std::string_view direccion, double valor,
                                   std::string_view origen, std::string_view motivo) = 0;
    virtual void forzarBloque_porNivel_NVeces(double nivel, double veces,
                                              std::string_view quien) = 0;
    /// An address that was asked for and is in no table.
    virtual void forzarPoleo(const std::string& direccion, std::string_view quien) = 0;
};

} // namespace kv
