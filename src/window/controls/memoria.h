// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QVariant>

class QString;
class QWidget;

namespace kv {

// What the windows remember from one start to the next for the user who looks at them, in the
// user's own folder of settings: sizes, columns, filters, what is drawn. Nothing of the plant's. A
// user without such a folder begins anew each time.

[[nodiscard]] QVariant recordado(const QString& clave, const QVariant& siNo = {});
void recordar(const QString& clave, const QVariant& valor);

/// What is too long to stand among the others, in a file of its own beside them.
[[nodiscard]] QByteArray recordadoAparte(const QString& nombre);
void recordarAparte(const QString& nombre, const QByteArray& que);

/// The window's place and size, under the window's name.
void recordarLugar(const QWidget& ventana);
/// Gives it what was remembered, if its screen still has that room; false when nothing was.
bool volverAlLugar(QWidget& ventana);

} // namespace kv
