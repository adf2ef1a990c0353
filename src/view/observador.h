#pragma once

#include <cstdint>
#include <string_view>

namespace kv {

enum class Color : std::uint8_t { Ninguno, Rojo, Verde };

/// Sees the labels and messages that the operator is shown, as they are shown. What it is told is
/// valid during the call only, and it changes nothing of the view.
class Observador {
  public:
    virtual ~Observador() = default;
    virtual void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) = 0;
    virtual void alCambiarColor(std::string_view etiqueta, Color color) = 0;
    /// A message box that wants no answer.
    virtual void alMostrarMensaje(std::string_view titulo, std::string_view texto) = 0;
};

} // namespace kv
