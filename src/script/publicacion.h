// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/tablas.h"
#include "platform/sello.h"
#include "script/ScriptControl.h"
#include "view/vista.h"

#include <string_view>

namespace kv {

/// The supervisory client, as seen by those who have news for it.
class AvisoAlCliente {
  public:
    virtual ~AvisoAlCliente() = default;
    /// `direccion` is a block key; the value and status are those of its register. Does not let
    /// events run: the variables of whole connections are passed on in one go.
    virtual void notificarVariable(std::string_view direccion, double valor, double estado) = 0;
};

/// Another listener for changes of a variable's value or status.
class OyenteDeValores {
  public:
    virtual ~OyenteDeValores() = default;
    /// Does not let events run.
    virtual void alCambiar(Indice bloque) = 0;
};

/// Takes a variable's value and status to everybody who looks at it: the script's global variables,
/// the row of the variables list and the supervisory client, in this order.
class Publicacion {
  public:
    Publicacion(Tablas& tablas, ScriptControl& guion, Vista& vista, Sello& sello);
    /// Null until the door to the client is open.
    void avisarA(AvisoAlCliente* cliente) { cliente_ = cliente; }
    /// Null: no other listener.
    void avisarTambienA(OyenteDeValores* oyente) { oyente_ = oyente; }

    /// Makes the script variables of a new block and publishes them: value 0, status BAD.
    void darDeAlta(BloqueLectura& bloque);
    /// Tells the client of a block that it cannot know yet.
    void presentar(Indice bloque) { notificar(tablas_.bloques[bloque]); }
    /// The block is no longer configured: it and its bits become BAD for everybody once more, and
    /// what may still come of it is not published. Its names stay known to the script.
    void darDeBaja(Indice bloque);
    /// Makes and publishes the script variables of bit `b`, which at once has what its register
    /// has.
    void darDeAltaBit(BloqueLectura& bloque, std::size_t b);
    /// To the script alone: its host has begun anew, and what its text had put into the variables
    /// of the plant is not what the plant has.
    void publicarTodoAlGuion();
    /// Switches a block on or off: the one place that does, so that its check boxes tell the truth.
    void ponerActivo(Indice bloque, bool activo);
    /// A good answer: stores value and status OK, publishes, shows and notifies, but only when the
    /// value or the status is new. Tries that failed before are forgotten.
    void valorLeido(Indice bloque, double valor);
    /// No answer is to be had: the variable and its bits become BAD, for the reason that `frase`
    /// gives in their rows.
    void sinRespuesta(Indice bloque, FraseDeEstado frase);
    /// The connection is lost: every variable and every bit of its blocks becomes BAD.
    void establecerBAD_En_Socket(Indice conexion);

  private:
    void ponerEstado(BloqueLectura& bloque, double estado);
    void quedarBad(BloqueLectura& bloque, const LoMostrado& mostrado);
    void publicar(Indice ranura, double valor);
    void notificar(const BloqueLectura& bloque);
    [[nodiscard]] std::int64_t ahora() const;
    void ponerBit(const BloqueLectura& bloque, std::size_t b);
    void publicarBit(const BloqueLectura& bloque, std::size_t b);
    void ponerBits(const BloqueLectura& bloque);
    [[nodiscard]] std::pair<Indice, Indice> ranuras(const std::string& nombre);

    Tablas& tablas_;
    ScriptControl& guion_;
    Vista& vista_;
    Sello& sello_;
    AvisoAlCliente* cliente_ = nullptr;
    OyenteDeValores* oyente_ = nullptr;
};

} // namespace kv
