// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "view/clave_de_orden.h"
#include "view/lista.h"

#include <QColor>
#include <QIcon>

#include <cstdint>
#include <string>
#include <vector>

class QPalette;

namespace kv {

/// How a row stands, as far as an operator must see it at a glance.
enum class EstadoDeFila : std::uint8_t {
    Ninguno,
    Bien,         ///< OK, connected, polled
    Mal,          ///< BAD
    Descansa,     ///< its station was silent: asked again later
    Desconectada, ///< no link
    Apagada,      ///< switched off by its check box
    Vieja,        ///< OK when it was read last, which is too long ago
};
inline constexpr std::size_t kEstadosDeFila = 7;

/// A sign and a colour for a state: either of them alone is enough to tell it.
[[nodiscard]] QIcon senalDeEstado(EstadoDeFila estado);
/// Colour of the row's text on this palette, light or dark; an invalid one for the usual colour.
[[nodiscard]] QColor colorDeEstado(EstadoDeFila estado, const QPalette& paleta);

/// What a window knows of a list beside its rows.
struct FormaDeLista {
    bool conTildes;
    int columnaDeEstado; ///< where the sign stands
    int columnaDeCifras; ///< set flush right, -1 without one
    EstadoDeFila (*estado)(const Lista& lista, std::uint32_t fila);
    /// The text of a cell on the screen.
    std::string (*texto)(const Lista& lista, std::uint32_t fila, std::size_t columna);
    std::vector<Especie> especies;       ///< by column
    std::vector<std::size_t> filtrables; ///< columns that hardly change, in which a filter looks
    std::vector<int> anchos;             ///< by column, in characters; a header is never cut
};
[[nodiscard]] const FormaDeLista& formaDeSockets();
[[nodiscard]] const FormaDeLista& formaDeVariables();
[[nodiscard]] const FormaDeLista& formaDeBloques();

} // namespace kv
