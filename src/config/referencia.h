// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kv {

/// The reference of every key of every file, in Spanish and Markdown, made from the tables that the
/// readers use. Kept as docs/claves.md, which a test compares.
[[nodiscard]] std::string referenciaDeClaves();

} // namespace kv
