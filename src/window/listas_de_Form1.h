// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/lists/anexos.h"
#include "window/overview/recuento.h"
#include "window/partes.h"

namespace kv {

/// Two columns for the variables, how old they are and since when they are what they are; the mark
/// of those that are old, and why. What is given must outlive what is made.
[[nodiscard]] Anexos anexosDeVariables(const PartesDeVentana& partes);
/// A block that rests is not well, whatever the words of its row.
[[nodiscard]] Anexos anexosDeBloques(const PartesDeVentana& partes);
/// A link that is up says of whom nothing comes.
[[nodiscard]] Anexos anexosDeConexiones(const PartesDeVentana& partes, const Recuento& recuento);

/// The connection in a row of the connections list; kNinguno for a row that is not a connection's.
[[nodiscard]] Indice conexionDeFila(const Tablas& tablas, std::uint32_t fila);

} // namespace kv
