// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <string_view>

namespace kv {

/// The language of the windows' own texts and of the toolkit's: "en" for English; anything else is
/// Spanish, the language of the sources. What the driver writes into lists and traces is Spanish
/// always; what it tells the operator is asked for in this language. Call before windows are made.
void ponerIdioma(std::string_view idioma);
/// Whether the windows speak English: for texts that come to them in both languages.
[[nodiscard]] bool enIngles();

} // namespace kv
