// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

namespace kv {

/// Writes a picture of a window into the build's folder of pictures, under a name without suffix.
void fotografiar(QWidget& ventana, const char* nombre);

} // namespace kv
