// SPDX-License-Identifier: Apache-2.0
#pragma once

class QPalette;

namespace kv {

/// The palette with those of its colours changed that cannot be read on their grounds (a contrast
/// of 4.5 is what letters need): those of chosen rows, of hints in empty boxes and of links.
[[nodiscard]] QPalette legible(QPalette paleta);
/// From now on the application's colours are legible, also when the desktop changes them.
void cuidarColores();

} // namespace kv
