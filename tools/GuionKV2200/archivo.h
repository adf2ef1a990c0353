// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// A file's bytes; nullopt: it cannot be read, or has more than `mayor`.
std::optional<std::string> leerArchivo(const std::string& ruta, std::size_t mayor);
