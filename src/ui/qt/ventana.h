#pragma once

class QIcon;
class QLayout;
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

/// The program's picture, which its windows carry.
[[nodiscard]] QIcon iconoDelPrograma();

} // namespace kv
