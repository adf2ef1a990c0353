// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kv {

/// What an entry of the log is about. Numbers are for good: people look them up, and programs watch
/// for them. Hundreds: the program, links and stations, blocks and writes, the script, clients.
enum class Novedad : std::uint16_t {
    Ninguna = 0, ///< a failure inside the program: its own text says all there is
    Arranque = 101,
    Planta = 102,
    Fin = 103,
    Configuracion = 110,
    Recargada = 111,
    NoRecargada = 112,
    AjusteCambiado = 120,
    AjusteNoValido = 121,
    Descriptores = 130,
    CarpetaSinEscritura = 131,
    EntradasPerdidas = 132,
    Grabacion = 140,
    EnlaceArriba = 201,
    EnlaceAbajo = 202,
    EnlaceNoLevanta = 203,
    EnlaceIntermitente = 204,
    EnlaceRetirado = 205,
    EstacionMuda = 211,
    EstacionContesta = 212,
    EstacionIntermitente = 213,
    BloqueApagado = 301,
    BloqueEncendido = 302,
    BloquesConmutados = 303,
    ForzadosEnVano = 304,
    EscrituraRechazada = 311,
    EscrituraAbandonada = 312,
    EscriturasFallidas = 313,
    FallaDelGuion = 401,
    GuionDetenido = 402,
    GuionSigue = 403,
    GuionIntermitente = 404,
    ClienteEntra = 501,
    ClienteSale = 502,
    ClientesIntermitentes = 503,
    PuertaCerrada = 511,
    ClaveErrada = 512,
    EscrituraNoAdmitida = 513,
    NoEscucha = 514,
};

/// What there is to know of a kind of entry, in one language.
struct Explicacion {
    std::string_view titulo;
    std::string_view causa;
    std::string_view mirar; ///< what to look at
    std::string_view hacer; ///< what mends it
};

struct FichaDeNovedad {
    Novedad cual;
    int prioridad; ///< as the system's journal counts: 3 error, 4 warning, 5 notice, 6 information
    Explicacion es, en;
};

/// One for each kind of entry, by number.
[[nodiscard]] std::span<const FichaDeNovedad> novedades();
/// Null for a number that no entry has.
[[nodiscard]] const FichaDeNovedad* fichaDe(Novedad cual);
/// "KV201".
[[nodiscard]] std::string codigoDe(Novedad cual);
/// The kind that "201" or "KV201" names.
[[nodiscard]] std::optional<Novedad> novedadDe(std::string_view codigo);

/// What `--explicar` prints: Spanish, then English.
[[nodiscard]] std::string explicacionDe(const FichaDeNovedad& ficha);
/// All of them as a document. Kept as docs/novedades.md, which a test compares.
[[nodiscard]] std::string referenciaDeNovedades();

} // namespace kv
