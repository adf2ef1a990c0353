// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/contadores.h"
#include "link/conexiones.h"
#include "link/turno.h"
#include "plant/tablas.h"
#include "platform/reloj.h"
#include "poll/reloj_de_bloques.h"
#include "text/idioma.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kv {

/// How old a variable is, and since when it is what it is. Milliseconds of the clock that never
/// goes back.
struct Edad {
    bool ok = false;
    std::int64_t desdeMs = 0;    ///< since when it is OK or BAD
    std::int64_t leidaMs = -1;   ///< its last answer; -1: never
    std::int64_t esperadaMs = 0; ///< how old it may be; 0: nobody is to read it by itself
    bool vieja = false;          ///< OK, and older than that
};

/// What a station, or all of a connection, says for itself.
struct ResumenDeEstacion {
    std::uint32_t ok = 0, bad = 0, viejas = 0; ///< variables that are polled
    bool callada = false;                      ///< it does not answer
    std::int64_t desdeMs = -1;  ///< when the first of its failures in a row was; -1: no failure
    std::uint32_t intentos = 0; ///< so many
};

/// Why a variable, block, station or connection is as it is, in one sentence each. Looks at the
/// plant's records when it is asked and keeps nothing but its language, so that whoever speaks
/// another one has a copy of its own. Indices must be those of records that exist.
class PorQue {
  public:
    /// All of them must outlive this.
    PorQue(const Tablas& tablas, const Turnos& turnos, const GestorDeConexiones& conexiones,
           const RelojDeBloques& relojDeBloques, const Contadores& contadores, const Reloj& reloj)
        : tablas_(tablas), turnos_(turnos), conexiones_(conexiones), bloques_(relojDeBloques),
          contadores_(contadores), reloj_(reloj) {}
    /// Spanish until then.
    void hablarEn(Idioma idioma) { idioma_ = idioma; }

    /// Of the variable of a block: whether its value counts, since when, and why not.
    [[nodiscard]] std::string porQueVariable(Indice bloque) const;
    /// What a block is at and when its next request is due.
    [[nodiscard]] std::string porQueBloque(Indice bloque) const;
    [[nodiscard]] std::string porQueEstacion(Indice conexion, Indice estacion) const;
    [[nodiscard]] std::string porQueConexion(Indice conexion) const;

    [[nodiscard]] Edad edad(Indice bloque) const;
    [[nodiscard]] ResumenDeEstacion resumen(Indice conexion, Indice estacion) const;
    /// "sin respuesta desde 03:12:05 (4)", of a station that is silent.
    [[nodiscard]] std::string sinRespuesta(const ResumenDeEstacion& callada) const;
    /// A station does not answer.
    [[nodiscard]] bool callada(const Estacion& e) const;
    /// How long one turn of all blocks of a connection takes as a rule, ms.
    [[nodiscard]] std::int64_t turnoDeTodosMs(Indice conexion) const;
    [[nodiscard]] Edad edad(Indice bloque, std::int64_t ahoraMs, std::int64_t turnoMs) const;
    /// The calendar time of a moment.
    [[nodiscard]] FechaHora fecha(std::int64_t ms) const;
    /// "03:12:05", with its day where that is not today.
    [[nodiscard]] std::string hora(std::int64_t ms) const;
    /// "2,3 s": how long ago.
    [[nodiscard]] std::string hace(std::int64_t ms) const;

  private:
    using Partes = std::initializer_list<std::string_view>;
    [[nodiscard]] std::string decir(const Frase& frase, Partes partes = {}) const;
    [[nodiscard]] std::string contar(const Frase& una, const Frase& varias, std::uint32_t n) const;
    [[nodiscard]] std::string numero(double valor) const;
    [[nodiscard]] std::string enSegundos(std::int64_t ms) const;
    [[nodiscard]] std::string duracion(std::int64_t ms) const;
    [[nodiscard]] std::string dentroDe(std::int64_t ms) const;
    [[nodiscard]] std::string causa(const BloqueLectura& b) const;
    [[nodiscard]] std::string causaDeEstacion(Indice conexion, Indice estacion) const;
    [[nodiscard]] std::string sinEnlace(Indice conexion) const;
    [[nodiscard]] std::string desdeCuandoSinEnlace(Indice conexion) const;
    [[nodiscard]] std::string enDescanso(const BloqueLectura& b) const;
    [[nodiscard]] std::string enSuTurno(const BloqueLectura& b) const;
    [[nodiscard]] std::string queOcupaLaLinea(const BloqueLectura& b) const;
    [[nodiscard]] std::string intentos(const Fallidos& f) const;
    [[nodiscard]] std::string apagado(const BloqueLectura& b) const;
    [[nodiscard]] Indice quienSondea(const Estacion& e) const;

    const Tablas& tablas_;
    const Turnos& turnos_;
    const GestorDeConexiones& conexiones_;
    const RelojDeBloques& bloques_;
    const Contadores& contadores_;
    const Reloj& reloj_;
    Idioma idioma_ = Idioma::Castellano;
};

} // namespace kv
