// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

/// What the plant's variables hold, answer by answer: of each row only what is new in it.
struct Valores {
    struct Cambio {
        std::size_t nombre; ///< its place in `nombres`
        double valor;
    };
    std::vector<std::string> nombres;
    std::vector<std::vector<Cambio>> filas;
};

/// A file of values that makes no sense: "FILE:LINE: what", in Spanish.
struct ValoresMalos : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Reads a file of values: a driver's recording, lines NAME=VALUE (one row), or a table with a
/// column a name and a row an answer, set apart by commas, semicolons or tabulators, in which an
/// empty cell leaves the value as it was. Names may be addresses (1.1.10). A register without a
/// status of its own is OK. Throws ValoresMalos.
Valores leerValores(const std::string& ruta);
