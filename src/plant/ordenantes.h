// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// Who may have switched a block on or off.
enum class Ordenante : std::uint8_t {
    Configuracion,
    Ventana,
    Guion,
    Cliente, ///< of an address
    Usuario, ///< of a name, by the local door
    Otros,   ///< more of them than are kept
};

inline constexpr std::array kOrdenantes = {
    FraseDe{Ordenante::Configuracion, Frase{"la configuracion", "the configuration"}},
    FraseDe{Ordenante::Ventana, Frase{"la ventana", "the window"}},
    FraseDe{Ordenante::Guion, Frase{"el guion", "the script"}},
    FraseDe{Ordenante::Cliente, Frase{"el cliente %1", "the client %1"}},
    FraseDe{Ordenante::Usuario, Frase{"el usuario %1", "the user %1"}},
    FraseDe{Ordenante::Otros, Frase{"otros", "others"}},
};
static_assert(enOrden(kOrdenantes, Ordenante::Otros), "each has its name, in its place");

/// As the tables keep them, and the log tells them. `cual`: which client or user.
[[nodiscard]] inline std::string nombreDe(Ordenante quien, std::string_view cual = {}) {
    return decir(kOrdenantes[static_cast<std::size_t>(quien)].frase, Idioma::Castellano, {cual});
}
/// One of those names in a language.
[[nodiscard]] inline std::string ordenanteEn(Idioma idioma, std::string_view nombre) {
    return pasarA(idioma, kOrdenantes, nombre);
}

/// Who asks for a write, as boxes, the log and the record of writes hold it: people search for it.
inline constexpr std::string_view kOrigenGuion = "guion";
inline constexpr std::string_view kOrigenVentana = "ventana";
/// `direccion`: "address:port" of the client.
[[nodiscard]] inline std::string origenDeCliente(std::string_view direccion) {
    return "cliente " + std::string(direccion);
}
[[nodiscard]] inline std::string origenDeUsuario(std::string_view nombre) {
    return "usuario " + std::string(nombre);
}
/// Whether a script asks: it writes by the thousand, of which the operator's box says nothing.
[[nodiscard]] constexpr bool esDelGuion(std::string_view origen) { return origen == kOrigenGuion; }

} // namespace kv
