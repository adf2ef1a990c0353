// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/problema.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A table as a spreadsheet saves it, read row by row. What is wrong in it is reported with its
/// row, as a line of the file, and its column. Separated by semicolons, commas or tabs, in UTF-8 or
/// Windows-1252; its first row names its columns, whatever their order and letter case. Memory
/// beside the content is bounded, time linear.
class TablaCsv {
  public:
    static constexpr std::size_t kMaximoDeCeldas = 256; ///< of a row; others count as empty

    /// `columnas` are the names that have a meaning; a column's number is its place among them.
    /// `consecuencia`: what becomes of a row with a fault in it. All of them, and the content, must
    /// outlive the table.
    TablaCsv(std::string_view contenido, const std::string& ruta,
             std::span<const std::string_view> columnas, std::string_view consecuencia,
             Problemas& problemas);

    /// Reads the names of the columns and tells what they lack. False: nothing can be read.
    [[nodiscard]] bool cabecera(std::initializer_list<std::size_t> obligatorias);
    /// The next row that is not empty; false at the end.
    bool siguiente();
    [[nodiscard]] std::uint32_t fila() const { return fila_; }
    /// Whether the table ends in the midst of the row: it has no line end, and not all cells.
    [[nodiscard]] bool cortada() const;
    [[nodiscard]] bool tiene(std::size_t columna) const { return donde_[columna] != kSin; }
    /// What stands in the row's cell, in UTF-8; empty where the table has no such column. A text of
    /// more than one line is reported.
    [[nodiscard]] std::string texto(std::size_t columna);

    void mal(std::string que);
    void mal(std::size_t columna, const std::string& que);

  private:
    /// Quotes keep the blanks within them.
    struct Celda {
        std::string texto;
        bool citada = false;
        [[nodiscard]] std::string_view dice() const;
    };
    static constexpr std::size_t kSin = kMaximoDeCeldas;

    void quitarFila();

    std::string enUtf8_; ///< the content, where it had to be converted
    std::string_view resto_;
    const std::string& ruta_;
    std::span<const std::string_view> columnas_;
    std::string_view consecuencia_;
    Problemas& problemas_;
    char separador_ = ';';
    std::vector<std::size_t> donde_; ///< by column, its place in the rows
    std::vector<Celda> celdas_;
    std::uint32_t fila_ = 0;
    bool termina_ = true; ///< the row, with a line end
    bool esUtf16_;
};

/// The mark of UTF-8 with which a table that we write begins.
inline constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
/// A text as a cell of a table that is separated by semicolons.
[[nodiscard]] std::string celdaCsv(std::string_view texto);
} // namespace kv
