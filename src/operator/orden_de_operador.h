// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// An order of the operator to the engine, as a value: what a recording keeps and gives again.
struct Orden {
    enum class Clase : std::uint8_t {
        Forzar,      ///< texto: address
        ForzarNivel, ///< numero: level, otro: times
        Escribir,    ///< texto: address, numero: value
        Activar,     ///< numero: block, otro: 1 or 0
        Scan,        ///< numero: block, otro: seconds
        Buscar,      ///< texto: address
        Ocultar,
        VerServidor, ///< numero: 1 or 0
        Salir,
        Recargar,
        Olvidar, ///< numero: block
    };
    Clase clase;
    std::string texto = {};
    double numero = 0;
    double otro = 0;
};

[[nodiscard]] std::string textoDeOrden(const Orden& orden);
/// Nothing for a text that is not an order.
[[nodiscard]] std::optional<Orden> ordenDeTexto(std::string_view texto);

/// Called right before every order is carried out, and right after, also when it failed.
class RegistroDeOrdenes {
  public:
    virtual ~RegistroDeOrdenes() = default;
    virtual void empieza(std::string_view orden) = 0;
    virtual void termina() = 0;
};

} // namespace kv
