// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kv {

/// How a write ended.
enum class FinDeEscritura : std::uint8_t {
    Confirmada,
    SinRespuesta,       ///< all tries are used up
    ConexionPerdida,    ///< it waited or was under way
    PalabraDesconocida, ///< the register of its bit could not be read
    Vencida,            ///< it waited for longer than a write may
    ProgramaTerminado,  ///< it waited or was under way when the program ended
    Retirada,           ///< it waited when its register went out of the configuration
    OtroValor           ///< its last try was answered, with another value
};

struct PalabrasDeFin {
    FinDeEscritura cual;
    Frase frase;
    std::string_view alAbandonar; ///< what the trace of one that is given up ends with
};
inline constexpr std::array kFinesDeEscritura = {
    PalabrasDeFin{FinDeEscritura::Confirmada, Frase{"confirmada", "confirmed"}, ""},
    PalabrasDeFin{FinDeEscritura::SinRespuesta, Frase{"sin respuesta", "no answer"}, ""},
    PalabrasDeFin{FinDeEscritura::ConexionPerdida, Frase{"conexion perdida", "connection lost"},
                  " Sin conexion"},
    PalabrasDeFin{
        FinDeEscritura::PalabraDesconocida,
        Frase{"no se pudo leer la palabra del bit", "the word of the bit could not be read"},
        " No se conoce la palabra del bit"},
    PalabrasDeFin{FinDeEscritura::Vencida, Frase{"espero demasiado", "it waited too long"},
                  " Espero demasiado"},
    PalabrasDeFin{FinDeEscritura::ProgramaTerminado,
                  Frase{"termino el programa", "the program ended"}, ""},
    PalabrasDeFin{FinDeEscritura::Retirada, Frase{"ya no esta configurado", "no longer configured"},
                  " Ya no esta configurado"},
    PalabrasDeFin{FinDeEscritura::OtroValor,
                  Frase{"contesto otro valor", "another value was answered"}, ""},
};
static_assert(enOrden(kFinesDeEscritura, FinDeEscritura::OtroValor),
              "each has its words, in its place");

/// Records, boxes and the log hold them in Spanish.
[[nodiscard]] constexpr std::string_view palabras(FinDeEscritura fin,
                                                  Idioma idioma = Idioma::Castellano) {
    return kFinesDeEscritura[static_cast<std::size_t>(fin)].frase.en(idioma);
}
/// What boxes and records say of a write that was asked for while an equal one waited.
inline constexpr std::string_view kYaEsperaUnaIgual = "ya espera una igual";

} // namespace kv
