// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/configurados.h"
#include "plant/fallidos.h"
#include "plant/momento.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// Number of a record in its table.
using Indice = std::uint32_t;
inline constexpr Indice kNinguno = 0xFFFFFFFF;

/// What a variable's row says of its state.
enum class FraseDeEstado : std::uint8_t {
    SegunEstado,    ///< "OK" or "BAD"
    PorTiempoFuera, ///< its tries are used up
    EstacionMuda    ///< its station gives no answer
};
/// That, and the time that the row shows (see empaquetar), in the room of one of them.
class LoMostrado {
  public:
    LoMostrado() = default;
    LoMostrado(std::int64_t instante, FraseDeEstado frase)
        : ambos_(instante * kFrases + static_cast<std::int64_t>(frase)) {}
    [[nodiscard]] std::int64_t instante() const { return ambos_ / kFrases; }
    [[nodiscard]] FraseDeEstado frase() const {
        return static_cast<FraseDeEstado>(ambos_ % kFrases);
    }

  private:
    static constexpr std::int64_t kFrases = 4;
    std::int64_t ambos_ = 0;
};

/// The bit variables of one register. Made when the first of them is.
struct BitsDeVariable {
    std::array<bool, 16> bitDefinido{};
    std::array<std::string, 16> bitNombres;
    std::array<FilaDeLista, 16> bitFilas{};
    std::array<Indice, 16> ranuraValor{};
    std::array<Indice, 16> ranuraEstado{};
};

/// A block: one register of one station, which is one `Variable`. A configured block of several
/// registers becomes as many of these, one behind the other.
struct alignas(64) BloqueLectura {
    // In four lines of the processor's memory. What the supervisory client gets to know, and
    // whether the block may be asked:
    double valor = 0;
    double estado = 0; ///< kOk or kBad
    std::string clave;
    Indice primeroDelConfigurado = kNinguno; ///< the first of what one configured block became
    bool retirado = false;                   ///< no longer configured, see Tablas
    bool activo = false;                     ///< enabled; set with Publicacion::ponerActivo
    bool pendiente = false;                  ///< due; set with Tablas::ponerPendiente
    bool habilitadoPorRespuestas = true;     ///< set with Tablas::habilitar
    bool tieneTrama = false;                 ///< the address fits a frame: it can be polled
    bool sondeo = false;  ///< asked again after a rest, once: its register is known to be silent
    bool enDuda = false;  ///< the last try was answered, but perhaps with another register's answer
    bool saltado = false; ///< others went before it because their answers could be told apart
    bool forzado = false; ///< by level, see below
    bool lecturaForzada = false; ///< the outstanding request left after the force was asked for
    bool aPedido = false;        ///< not configured: made because its register was asked for
    std::uint8_t ordenante = 0;  ///< who switched it last: see Tablas::ordenantes

    // What an exchange touches besides, in two:
    LoMostrado mostrado;
    std::int64_t leidoMs = -1; ///< when its last answer came, on the clock that never goes back
    std::int64_t scanMs = 0;   ///< 0: read when the link comes up and when forced
    std::int64_t tiempoFueraMs = 0;
    double reintentos = 0; ///< failed tries of the present transaction
    double reintentosMax = 0;
    Indice indice = kNinguno; ///< in its own table
    Indice idConexion = kNinguno;
    Indice idEstacion = kNinguno;
    Indice posicionEnConexion = 0;

    Fallidos fallidos;
    std::unique_ptr<BitsDeVariable> bits; ///< null until a bit is asked for
    Indice ranuraValor = kNinguno;        ///< of the script's variable; kNinguno: no name for one
    Indice ranuraEstado = kNinguno;
    FilaDeLista filaVariable = kSinFila;
    Momento estadoDesde; ///< since when it is OK or BAD
    Solicitud tramaSolicitud{};
    bool activoPorDefecto = false;
    std::int16_t puerto = 0;
    std::int16_t plc = 0; ///< `numero` of the station
    FilaDeLista filaBloque = kSinFila;
    Momento ordenDesde; ///< when it was switched on or off; empty: as it was configured

    // And what is touched when an operator or a misfortune asks for it.
    std::int64_t reconeccionMs = 0;
    double nivel = 0;
    double scanSegundos = 0;
    double scanConfigurado = 0; ///< seconds; an operator may have set another
    std::uint32_t forzadoVeces = 0;
    std::uint32_t forzadoContador = 0; ///< answers so far
    bool activoSinForzar = false;
    Indice ultimaEscritura = kNinguno; ///< the write asked for last of this register

    /// It may be asked for, once it is due.
    [[nodiscard]] bool sePuedePedir() const {
        return activo && tieneTrama && habilitadoPorRespuestas;
    }
    /// The register as configured, hexadecimal where a frame is built: the end of its key.
    [[nodiscard]] std::string_view direccion() const {
        const std::string_view todo = clave;
        return todo.substr(todo.find('.', todo.find('.') + 1) + 1);
    }
};
static_assert(sizeof(BloqueLectura) == 256);

/// What a write is at. Every step is a transaction of its own on the connection.
enum class PasoDeEscritura : std::uint8_t {
    PorLeer,   ///< a bit's: its register is read first
    PorEnviar, ///< the word is known
    Enviada,   ///< the word has left
    Terminada
};

/// A write: a register or one bit of it, a value, and how far it has come.
struct BloqueEscritura {
    PasoDeEscritura paso = PasoDeEscritura::Terminada;
    bool esperandoConfirmacion = false; ///< a read-back is out
    bool enDuda = false;                ///< an answer came that may be another request's
    bool otroValor = false;             ///< what left last was answered with another value
    bool cedio = false;                 ///< reads have the line before its next try
    Indice indice = kNinguno;
    Indice idConexion = kNinguno;
    Indice indiceBloqueLectura = kNinguno;
    int bit = -1;       ///< 0 to 15, or -1: the whole register
    double pedido = 0;  ///< the value asked for: of the register, or of the bit
    double palabra = 0; ///< what the register shall be
    double reintentos = 0;
    std::int64_t pedidaMs = 0; ///< when it was asked for, on the clock that never goes back
    std::int64_t leidaMs = 0;  ///< when a bit's register was read
    std::uint32_t lecturas = 0;
    Solicitud tramaSolicitud{};
    std::string origen;       ///< who asked for it
    double valorAnterior = 0; ///< of the register or bit when the frame left
    bool seConociaAnterior = false;

    [[nodiscard]] bool esBit() const { return bit >= 0; }
    [[nodiscard]] bool activo() const { return paso != PasoDeEscritura::Terminada; }
};

} // namespace kv
