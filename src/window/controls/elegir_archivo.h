// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

class QString;
class QWidget;

namespace kv {

/// Asks for a file to write into, `nombre` being proposed; its ending is that of `nombre`. Returns
/// at once: `elegido` is called if one is chosen. The dialog is named "dlgGuardar".
void elegirArchivo(QWidget* padre, const QString& titulo, const QString& nombre,
                   std::function<void(const QString& ruta)> elegido);

} // namespace kv
