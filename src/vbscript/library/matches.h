// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

#include <string_view>
#include <utility>
#include <vector>

namespace vbscript {

/// Where a pattern was found, in characters.
struct Found {
    static constexpr std::size_t unset = SIZE_MAX;
    std::size_t at = 0, length = 0;
    std::vector<std::pair<std::size_t, std::size_t>> groups; ///< Start (or unset) and length.
};

Value makeMatch(const Value& text, const Found& found);
Value makeMatches(std::vector<Value> all);
/// What stands in place of a match: $1..$99, $&, $`, $', $$.
void appendReplacement(Value& out, std::u16string_view text, const Found& f,
                       std::u16string_view with);

} // namespace vbscript
