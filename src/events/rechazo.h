// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// Where a refusal comes from, which boxes and log word differently. What is wrong with the request
/// itself carries the number of the failure, those that scripts know.
enum class ClaseDeRechazo : std::int16_t {
    DeUnaPuerta, ///< whoever asks may not
    SinPlc,
    SinConexion,
    Argumento = 5,
    Desborde = 6,
    Memoria = 7,
    Interna = 51
};
[[nodiscard]] constexpr bool esDelPedido(ClaseDeRechazo clase) {
    return clase >= ClaseDeRechazo::Argumento;
}

/// Why a write is refused.
enum class Rechazo : std::uint8_t {
    SinPlc,
    SinConexion,
    DireccionNoValida,
    BitFueraDeRango,
    NadieLoLee,
    FueraDeTrama,
    DemasiadasEnEspera,
    SoloLectura, ///< the client's door, as the next one
    DemasiadasEnUnSegundo,
    UsuarioSinPermiso, ///< the local door
    ValorNoNumerico,
};

inline constexpr std::array kRechazos = {
    FraseDe{Rechazo::SinPlc, Frase{"no se encuentra PLC", "there is no such PLC"}},
    FraseDe{Rechazo::SinConexion, Frase{"sin conexion", "no connection"}},
    FraseDe{Rechazo::DireccionNoValida, Frase{"direccion no valida", "the address is not valid"}},
    FraseDe{Rechazo::BitFueraDeRango, Frase{"bit fuera de 0 a 15", "the bit is not from 0 to 15"}},
    FraseDe{Rechazo::NadieLoLee,
            Frase{"ningun bloque lee ese registro", "no block reads that register"}},
    FraseDe{Rechazo::FueraDeTrama, Frase{"direccion o valor fuera de trama",
                                         "the address or the value does not fit a frame"}},
    FraseDe{Rechazo::DemasiadasEnEspera,
            Frase{"demasiadas escrituras en espera", "too many writes are waiting"}},
    FraseDe{Rechazo::SoloLectura, Frase{"solo lectura", "read only"}},
    FraseDe{Rechazo::DemasiadasEnUnSegundo,
            Frase{"demasiadas en un segundo", "too many in one second"}},
    FraseDe{Rechazo::UsuarioSinPermiso, Frase{"no puede escribir por la puerta local",
                                              "not allowed to write by the local door"}},
    FraseDe{Rechazo::ValorNoNumerico,
            Frase{"el valor no es un numero", "the value is not a number"}},
};
static_assert(enOrden(kRechazos, Rechazo::ValorNoNumerico), "each has its words, in its place");

/// As records, boxes and the log hold it.
[[nodiscard]] constexpr std::string_view enPalabras(Rechazo rechazo) {
    return kRechazos[static_cast<std::size_t>(rechazo)].frase.castellano;
}
/// One of those texts in a language; what went wrong within the program stays as it is.
[[nodiscard]] inline std::string rechazoEn(Idioma idioma, std::string_view texto) {
    return pasarA(idioma, kRechazos, texto);
}

/// What the text of a refused write says. `direccion` is the address as it was given.
struct TextoDeRechazo {
    std::string_view direccion, motivo, origen;
    std::string_view clave = {}; ///< of the block, where there is a wording of its own

    [[nodiscard]] std::string unir() const;
    /// The parts point into the text.
    [[nodiscard]] static TextoDeRechazo partir(std::string_view texto);
};

} // namespace kv
