// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace kv {

/// A column that a list of the view has not, because what stands there changes by itself: asked for
/// when it is painted.
struct ColumnaPropia {
    QString titulo;
    int ancho; ///< characters
    std::function<QString(std::uint32_t fila)> texto;
    std::function<double(std::uint32_t fila)> orden; ///< what the column is sorted by
};

/// What a window adds to a list. All of it may be empty.
struct Anexos {
    std::vector<ColumnaPropia> columnas;         ///< behind those of the list
    std::function<bool(std::uint32_t)> vieja;    ///< OK, and not any more to be relied on
    std::function<QString(std::uint32_t)> ayuda; ///< why a row stands as it does
};

} // namespace kv
