// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// The first sheet of a workbook (.xlsx) as a table of text, in UTF-8, separated by semicolons:
/// rows keep their numbers, numbers have a decimal point, formulas give the result that was saved
/// with them. Throws std::exception when the bytes are no workbook or need too much memory.
[[nodiscard]] std::string primeraHojaComoCsv(std::string_view libro);

} // namespace kv
