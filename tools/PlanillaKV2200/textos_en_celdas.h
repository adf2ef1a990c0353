// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct TextoEnCelda {
    int fila = 0, columna = 0; ///< from 0
    std::string texto;
};

/// The texts that a workbook's first sheet has in its cells themselves, as programs that are no
/// spreadsheets write them: the library's own reader passes over those. Throws std::exception when
/// the bytes are no workbook or need too much memory.
[[nodiscard]] std::vector<TextoEnCelda> textosEnCeldas(std::string_view libro);

} // namespace kv
