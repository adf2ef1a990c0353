// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/bloque.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace kv {

/// What happened.
enum class Que : std::uint8_t {
    // A connection and its turns.
    EnlaceArriba,
    EnlaceAbajo,
    PausaEmpieza, ///< `numero`: its length, ms
    PausaTermina,
    LineaRetenida, ///< it is held back until late answers can no more come
    LineaNoCalla,  ///< it was held back for too long
    EnlaceCortado, ///< what had not arrived does not leave any more
    // What came from a station: `bytes`, or where they are more than eight a text, of which
    // `cuantos` were held from earlier arrivals.
    LlegaronBytes, ///< `numero`: how many the buffer holds
    Descarte,      ///< no answer; `numero`: of how many bytes
    Sobrante,  ///< an answer that was not waited for, that holds another value than was written,
               ///< or that could not be told apart from a late one;
               ///< `numero`: how many it stands for
    Recepcion, ///< the answer that was waited for
    // Reads.
    Envio,     ///< `bytes`: the request
    Reintento, ///< the same, `detalle` the number of the retry
    TicDeBloque,
    FinDelDescanso, ///< the tick of a block that rested
    BloqueHabilitado,
    BloqueDeshabilitado,
    TiempoFuera,
    EstacionMuda, ///< `detalle` 1: as it was when its link was lost
    EstacionContesta,
    // Steps of writes: `escritura`, its read block, `numero` the value.
    EscrituraLee, ///< the register of a bit; `bytes`: the request
    EscrituraSale,
    EscrituraLeeOtraVez,
    EscrituraRelee, ///< to see whether what was not answered arrived
    EscrituraRepite,
    TiempoFueraDeEscritura, ///< `numero`: how long it waited, ms
    EscrituraAbandonada,    ///< `detalle`: a FinDeEscritura
    // What is asked for, by window, script or client: writes, and what became of them.
    EscrituraUnida,     ///< asked for while an equal one waited; text: who asked
    EscrituraTerminada, ///< `detalle`: a FinDeEscritura
    EscrituraRechazada, ///< text: a TextoDeRechazo; `detalle`: a ClaseDeRechazo
    // Other orders. Text: the address or key that was given.
    SinPuertoNiPlc,
    ForzarSinTrama,
    ForzarSinConexion,
    ForzarEnDescanso, ///< `detalle` 1: the block has just been made
    Forzado,
    AltaFueraDeTrama,
    AltaSinLugar, ///< `numero`: how many a station may have
    AltaSinPuerto,
    BloqueDadoDeAlta, ///< `numero`: its scan, seconds
    NivelSinBloques,  ///< `numero`: the level
    // The script, and the supervisory client's wire.
    FallaDelGuion,
    DelCliente,
    RepetidasDelCliente, ///< `numero`: how many
    AlCliente,
    // What stands in the log, and in no box.
    EnlaceNoLevanta, ///< no attempt of those in a row succeeded; once until it is up
    BloqueConmutado, ///< `detalle`: 1 on, 0 off; by whom, its record says
    GuionDetenido,   ///< text: why; `detalle` 1: it rests
    GuionSigue,      ///< `detalle` 1: its file has been taken away
    ClienteEntra,    ///< text: "address:port"
    ClienteSale,     ///< the same; `detalle` 1: closed, as it did not answer
    Ultimo           ///< not an event: their number
};
static_assert(static_cast<unsigned>(Que::Ultimo) < 64);

/// What the kinds are about, in the order in which they stand above.
enum class Asunto : std::uint8_t {
    Conexion,
    Estacion,
    Lectura,
    PasoDeEscritura,
    Pedido,
    Guion,
    DelCliente,
    AlCliente,
    Registro
};
[[nodiscard]] constexpr Asunto asuntoDe(Que que) {
    if (que <= Que::EnlaceCortado) return Asunto::Conexion;
    if (que <= Que::Recepcion) return Asunto::Estacion;
    if (que <= Que::EstacionContesta) return Asunto::Lectura;
    if (que <= Que::EscrituraAbandonada) return Asunto::PasoDeEscritura;
    if (que <= Que::NivelSinBloques) return Asunto::Pedido;
    if (que <= Que::FallaDelGuion) return Asunto::Guion;
    if (que <= Que::RepetidasDelCliente) return Asunto::DelCliente;
    return que == Que::AlCliente ? Asunto::AlCliente : Asunto::Registro;
}

/// A set of kinds is a number with a bit for each.
[[nodiscard]] constexpr std::uint64_t bitDe(Que que) {
    return std::uint64_t{1} << static_cast<unsigned>(que);
}
[[nodiscard]] constexpr std::uint64_t bitsDe(std::initializer_list<Que> unos) {
    std::uint64_t ques = 0;
    for (const Que que : unos)
        ques |= bitDe(que);
    return ques;
}
/// Requests that leave once more.
inline constexpr std::uint64_t kRepeticiones =
    bitsDe({Que::Reintento, Que::EscrituraLeeOtraVez, Que::EscrituraRelee, Que::EscrituraRepite});
/// All requests that leave for a station.
inline constexpr std::uint64_t kSalidas =
    bitsDe({Que::Envio, Que::EscrituraLee, Que::EscrituraSale}) | kRepeticiones;
/// Those that read a register for a write.
inline constexpr std::uint64_t kLecturasDeEscrituras =
    bitsDe({Que::EscrituraLee, Que::EscrituraLeeOtraVez, Que::EscrituraRelee});
[[nodiscard]] constexpr bool contiene(std::uint64_t ques, Que que) {
    return (ques & bitDe(que)) != 0;
}
/// Of all kinds those for which `cumple` holds.
template <class Condicion>
[[nodiscard]] std::uint64_t quesCon(const Condicion& cumple) {
    std::uint64_t ques = 0;
    for (unsigned k = 0; k < static_cast<unsigned>(Que::Ultimo); ++k) {
        if (cumple(static_cast<Que>(k))) ques |= bitDe(static_cast<Que>(k));
    }
    return ques;
}

/// A trace line shows so many bytes of one arrival; a station that sends garbage at full speed must
/// not cost a screen of text for every packet.
inline constexpr std::size_t kBytesEnTraza = 512;

/// One event: of a fixed size, so that recording it costs next to nothing, whether it is read or
/// not.
struct Suceso {
    Que que = Que::Ultimo;
    std::uint8_t cuantos = 0; ///< of `bytes`
    std::int16_t detalle = 0;
    Indice conexion = kNinguno;
    Indice bloque = kNinguno;
    Indice escritura = kNinguno;
    std::uint32_t texto = 0; ///< of a text that is kept beside; 0: without a text
    std::array<std::uint8_t, 8> bytes{};
    std::int8_t bit = -1; ///< of a write; -1: the whole register
    bool callado = false; ///< not for the operator's box: a script writes by the thousand
    double numero = 0;
    std::int64_t instante = 0; ///< local calendar time, see empaquetar

    [[nodiscard]] std::span<const std::uint8_t> losBytes() const {
        return std::span(bytes).first(cuantos);
    }
    /// At most eight.
    void poner(std::span<const std::uint8_t> unos) {
        cuantos = static_cast<std::uint8_t>(std::min(unos.size(), bytes.size()));
        std::copy_n(unos.begin(), cuantos, bytes.begin());
    }
};
static_assert(sizeof(Suceso) == 48);

} // namespace kv
