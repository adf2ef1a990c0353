// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kv {

/// The word with bit `bit` (0 to 15) set, or cleared when `marcado` is false. Clearing a bit also
/// clears every bit above 15. Numbers are taken as 32-bit integers.
[[nodiscard]] double SetearBIT_YDevolverPalabra(double palabra, int bit, bool marcado);

} // namespace kv
