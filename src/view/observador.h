// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace kv {

enum class Color : std::uint8_t { Ninguno, Rojo, Verde };

/// How a label looks where the default is not wanted. Colours hold red in their lowest byte, then
/// green, then blue; those outside of 0 to 0xFFFFFF are the window's own.
struct AspectoDeEtiqueta {
    std::int32_t fondo = -1;
    std::int32_t tinta = -1;
    bool visible = true;
    [[nodiscard]] static bool esPropio(std::int32_t color) {
        return color >= 0 && color <= 0xFFFFFF;
    }
    friend bool operator==(const AspectoDeEtiqueta&, const AspectoDeEtiqueta&) = default;
};

/// Sees the labels and messages that the operator is shown, as they are shown. What it is given is
/// valid during the call only, and it changes nothing of the view.
class Observador {
  public:
    virtual ~Observador() = default;
    virtual void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) = 0;
    virtual void alCambiarColor(std::string_view etiqueta, Color color) = 0;
    virtual void alVestirEtiqueta(std::string_view /*etiqueta*/,
                                  const AspectoDeEtiqueta& /*aspecto*/) {}
    /// A message box that wants no answer.
    virtual void alMostrarMensaje(std::string_view titulo, std::string_view texto) = 0;
};

} // namespace kv
