#pragma once

#include <cstdint>
#include <string_view>

namespace kv {

enum class Color : std::uint8_t { Ninguno, Rojo, Verde };

/// Sees every text that the operator is shown, as it is shown. What it is told is valid during the
/// call only, and it changes nothing of the view.
class Observador {
  public:
    virtual ~Observador() = default;
    /// Text appended to a box; `indice` is -1 where boxes are not numbered.
    virtual void alAgregar(std::string_view caja, std::int64_t indice, std::string_view texto) = 0;
    virtual void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) = 0;
    virtual void alCambiarColor(std::string_view etiqueta, Color color) = 0;
    /// A message box that wants no answer.
    virtual void alMostrarMensaje(std::string_view titulo, std::string_view texto) = 0;
};

} // namespace kv
