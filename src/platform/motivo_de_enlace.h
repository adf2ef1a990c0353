// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// What a link was at when it failed: the same error of the system means another fault in each
/// phase.
enum class FaseDeEnlace : std::uint8_t { AlConectar, AlEscuchar, Establecido };

/// Why a link is not up, or nobody listens.
enum class Motivo : std::uint8_t {
    Rechaza,
    CortaApenas,
    NadieContesta,
    SinPuertoPropio,
    RutasAnulan,
    PuertoTomado,
    DireccionAjena,
    SinPermisoDePuerto,
    CortoElOtro,
    CerroElOtro,
    NadieConfirma,
    SinRuta,
    SinRutaARed,
    RedCaida,
    NoPermitido,
    SinDescriptores,
    SinMemoria,
    DireccionNoValida,
    NombreSinPreguntar, ///< of a name, as the next two
    NombreDesconocido,
    NombreSinAveriguar,
    NoLee,
    NoHayNadie,
    EscrituraAbandonada, ///< the driver cut it, as the next one
    LineaQueNoCalla,
};

/// As whoever has to mend the link reads it, in Spanish whatever the language of the machine: what
/// sockets keep, recordings hold and the log tells. `nombre`: of a machine.
[[nodiscard]] std::string enPalabras(Motivo motivo, std::string_view nombre = {});
/// The same of an error of the system. One that is not foreseen keeps the system's own words.
[[nodiscard]] std::string motivoDeEnlace(int error, FaseDeEnlace fase);
/// One of those texts in a language; the system's own words stay.
[[nodiscard]] std::string motivoEn(Idioma idioma, std::string_view texto);

} // namespace kv
