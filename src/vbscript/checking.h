// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/check/warning.h"

#include <string_view>

namespace vbscript {

/// What in a text (UTF-8) compiles and is hardly meant, for people who write it. Runs nothing;
/// linear in the text, but for the search of near names, which is bounded. A text that does not
/// parse gives nothing: Engine::check says why.
[[nodiscard]] Findings lookOver(std::string_view text, const Known& known);

/// The functions, constants and objects that every script finds, as people write them.
[[nodiscard]] const std::vector<std::string>& languageNames();

} // namespace vbscript
