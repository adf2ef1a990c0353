// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>
#include <QMap>
#include <QString>

#include <string>

class QWidget;

namespace kv {

/// The contrast of what is drawn: its commonest colour is the ground, the farthest from it is the
/// stroke's.
[[nodiscard]] double contrasteDe(const QImage& dibujo);

/// Fails for what is cut, crushed, off the screen or lies over another control.
void juzgarLugares(QWidget& ventana, const std::string& foto);
/// Fails for what can hardly be read, as it is drawn: labels, buttons, tabs, headings, cells, the
/// letters of texts. What is disabled is passed over.
void juzgarContraste(QWidget& ventana, const std::string& foto);
/// All that a window says of itself, seen or heard, and which control does; not what the driver
/// wrote into its boxes and cells.
[[nodiscard]] QMap<QString, QString> textosDe(const QWidget& ventana);

} // namespace kv
