// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

namespace kv {

/// The name that `texto` is most likely a misspelling of, whatever its letter case: the one that is
/// made of it with the fewest letters put in, taken out, changed or swapped, at most one and one
/// for every four letters. Empty when no name is that near.
[[nodiscard]] std::string_view masParecido(std::string_view texto,
                                           std::span<const std::string_view> nombres);

} // namespace kv
