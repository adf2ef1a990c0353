// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/csv.h"
#include "plant/descripciones.h"
#include "platform/archivos.h"
#include "platform/trabajo.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

/// A table beside the configuration, a row a variable: direccion (port.PLC.register, with .bit for
/// one of its bits), descripcion, unidad. A plant may do without it.
inline constexpr std::string_view kArchivoDeDescripciones = "descripciones.csv";

/// Characters of what it says.
inline constexpr std::size_t kMaximoDeDescripcion = 200;
inline constexpr std::size_t kMaximoDeUnidad = 20;

/// Where it lies for a configuration file.
[[nodiscard]] std::string rutaDeDescripciones(std::string_view rutaConfiguracion);

/// Adds what the table says. A row with a fault in it describes nothing and is reported; a file
/// that is missing is no problem. All of them must outlive it; the file is read whole in the first
/// portion.
Trabajo leerDescripciones(Archivos& archivos, std::string ruta, Descripciones& descripciones,
                          Problemas& problemas, Porciones& porciones);
/// The bytes of a table that says this.
[[nodiscard]] std::string tablaDeDescripciones(const Descripciones& descripciones);

/// The cells of a row that hold a description and its unit; a text that does not fit is reported,
/// and is empty then.
[[nodiscard]] Descripcion leerDescripcion(TablaCsv& tabla, std::size_t texto, std::size_t unidad);
/// Enters a row's description; what is wrong with its address is reported for column `columna`.
void anotarDescripcion(Descripciones& descripciones, const std::string& direccion,
                       Descripcion descripcion, TablaCsv& tabla, std::size_t columna);

} // namespace kv
