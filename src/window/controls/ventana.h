// SPDX-License-Identifier: Apache-2.0
#pragma once

class QIcon;
class QLabel;
class QLayout;
class QSize;
class QString;
class QWidget;

namespace kv {

/// The help-context number that every window and every control carries.
inline constexpr int kContextoDeAyuda = 70;
inline constexpr const char* kPropiedadDeAyuda = "helpContextId";

/// What every window does when it loads: the help-context number on itself and all its controls.
/// Controls that are made later are prepared by calling it again.
void prepararVentana(QWidget& ventana);

/// Makes the tabulator visit the controls of a layout, and of those inside it, in the order in
/// which they were put there. `ultimo` is the one visited before, or null; gives the last one.
QWidget* encadenarTabulador(QLayout& donde, QWidget* ultimo);

/// A label, under a name, for texts that the program did not write: shown letter by letter, where
/// the toolkit would follow any markup that it finds in them.
[[nodiscard]] QLabel* rotulo(const char* nombre, QWidget* padre);
/// The same for a tool tip: its text, in the toolkit's markup where it needs that.
[[nodiscard]] QString ayudaSinMarcas(const QString& texto);

/// Gives a window that size, or as much of it as its screen has room for: not every desktop makes
/// a window fit.
void acomodar(QWidget& ventana, const QSize& tamano);

/// Shows a window in front of all others.
void alFrente(QWidget& ventana);

/// The program's picture, which its windows carry.
[[nodiscard]] QIcon iconoDelPrograma();

} // namespace kv
