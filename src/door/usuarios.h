// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archivos.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

// Users and groups of this machine, from its own files: whoever else may be asked (a directory
// server) may take half a minute to answer, and the loop waits for nobody.

/// The name of a user, or its number where it has no name.
[[nodiscard]] std::string nombreDeUsuario(Archivos& archivos, std::uint32_t usuario);
/// The number of a group that is given by name or number; nothing when no group is so called.
[[nodiscard]] std::optional<std::uint32_t> numeroDeGrupo(Archivos& archivos,
                                                         std::string_view grupo);
/// Whether a list of names and numbers, separated by commas or blanks, has the user.
[[nodiscard]] bool estaEnLista(std::string_view lista, std::uint32_t usuario,
                               std::string_view nombre);

} // namespace kv
