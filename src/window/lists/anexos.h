// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/lists/estado_de_fila.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kv {

/// A column that a list of the view has not, because what stands there changes by itself: asked for
/// when it is painted.
struct ColumnaPropia {
    QString titulo;
    int ancho; ///< characters
    std::function<QString(std::uint32_t fila)> texto;
    /// What the column is sorted by; empty: by its texts.
    std::function<double(std::uint32_t fila)> orden = {};
    bool crece = false;     ///< its text becomes another every second
    bool filtrable = false; ///< hardly changes: a filter looks into it
};

/// What is to be said of a row that stands well and yet does not.
struct Reparo {
    EstadoDeFila estado;
    QString texto; ///< behind that of its state
};

/// What a window adds to a list. All of it may be empty.
struct Anexos {
    std::vector<ColumnaPropia> columnas; ///< behind those of the list
    std::function<std::optional<Reparo>(std::uint32_t fila)> reparo;
    std::function<QString(std::uint32_t fila)> ayuda; ///< why a row stands as it does
};

} // namespace kv
