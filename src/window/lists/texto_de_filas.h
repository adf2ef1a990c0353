// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>

class QAbstractItemModel;

namespace kv {

/// How registers are shown.
enum class Base : std::uint8_t { Decimal, Hexadecimal, Binaria };

/// A register's text in another base: "00FF", "0000 0000 1111 1111". What is no whole number of 32
/// bits stays as it is.
[[nodiscard]] std::string enBase(std::string texto, Base base);

/// Rows of a table, and those of its columns that are given, each row with an end of line behind
/// it; the headings come first. `separador` ';' makes it a CSV: what holds a separator, a quote or
/// an end of line is put into quotes. With a tabulator such characters become blanks.
[[nodiscard]] QString textoDeFilas(const QAbstractItemModel& modelo, const QList<int>& filas,
                                   const QList<int>& columnas, QChar separador);

} // namespace kv
