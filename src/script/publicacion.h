#pragma once

#include "core/tables/tablas.h"
#include "platform/sello.h"
#include "script/ScriptControl.h"
#include "ui/view/vista.h"

#include <string_view>

namespace kv {

/// The supervisory client, as seen by those who have news for it.
class AvisoAlCliente {
  public:
    virtual ~AvisoAlCliente() = default;
    /// `direccion` is a block key; the value and status are those of one of the block's slots. Does
    /// not let events run: whole connections are told of in one go.
    virtual void notificarVariable(std::string_view direccion, double valor, double estado) = 0;
};

/// Takes a variable's value and status to everybody who looks at it: the script's global variables,
/// the row of the variables list and the supervisory client, in this order.
class Publicacion {
  public:
    Publicacion(Tablas& tablas, ScriptControl& guion, Vista& vista, Sello& sello);
    /// Null while no client is served.
    void avisarA(AvisoAlCliente* cliente) { cliente_ = cliente; }

    /// Makes the script variables of a new block and publishes its slots: value 0, status BAD.
    void darDeAlta(BloqueLectura& bloque);
    /// Makes and publishes the script variables of bit `b` of slot `k`.
    void darDeAltaBit(BloqueLectura& bloque, std::size_t k, std::size_t b);
    /// A good answer: stores value and status OK in slot 0, publishes, shows and notifies, but only
    /// when the value or the status is new.
    void valorLeido(Indice bloque, double valor);
    /// The block's time-outs are used up: every slot becomes BAD.
    void bloqueSinRespuesta(Indice bloque);
    /// The connection is lost: every slot and every bit of its blocks becomes BAD.
    void establecerBAD_En_Socket(Indice conexion);

  private:
    void publicar(Indice ranura, double valor);
    void notificar(const BloqueLectura& bloque, std::size_t k);
    void valorEnBits(BloqueLectura& bloque);
    void perderBits(BloqueLectura& bloque, double estado);
    [[nodiscard]] std::pair<Indice, Indice> ranuras(const std::string& nombre);

    Tablas& tablas_;
    ScriptControl& guion_;
    Vista& vista_;
    Sello& sello_;
    AvisoAlCliente* cliente_ = nullptr;
};

} // namespace kv
