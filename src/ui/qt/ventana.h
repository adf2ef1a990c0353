#pragma once

class QIcon;
class QWidget;

namespace kv {

/// The help-context number that every window and every control carries.
inline constexpr int kContextoDeAyuda = 70;
inline constexpr const char* kPropiedadDeAyuda = "helpContextId";

/// What every window does when it loads: the help-context number on itself and all its controls.
/// Controls that are made later are prepared by calling it again.
void prepararVentana(QWidget& ventana);

/// The program's picture, which its windows carry.
[[nodiscard]] QIcon iconoDelPrograma();

} // namespace kv
