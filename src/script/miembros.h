// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kv {

/// What a script may ask of "mw".
enum class OperacionDeMw : std::uint8_t {
    writeMW,
    READBLOQ,
    escribirDireccion,
    forzarPoleo,
    forzarBloque_porID,
    forzarBloque_porNivel,
    forzarBloque_porNivel_NVeces,
    Activar_Desactivar_Bloque_Por_Solicitud,
    Activar_Dir,
    ModificarScanDeBloque,
    Log,
};

/// What the text that a member takes first has to name for the call to make sense.
enum class Nombra : std::uint8_t {
    Nada,
    Registro, ///< a register that is polled
    Estacion, ///< a register of a station: it is polled from then on
    Clave,    ///< a block, by its exact key
};

/// A member of "mw". `argumentos`: a letter for each, t for a text, n for a number, s for a state.
struct MiembroDeMw {
    std::string_view nombre;
    OperacionDeMw operacion;
    std::string_view argumentos;
    Nombra nombra;
};

[[nodiscard]] std::span<const MiembroDeMw> miembrosDeMw();

/// Null: no member of "mw" is called so, whatever the case of letters.
[[nodiscard]] const MiembroDeMw* miembroDeMw(std::string_view nombre);

/// The properties of "Label".
inline constexpr std::string_view kMiembrosDeLabel[] = {"Caption", "BackColor", "ForeColor",
                                                        "Visible"};

} // namespace kv
