// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "plant/tablas.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// The trace boxes, by the names of their controls.
enum class Caja : std::uint8_t {
    txtTramas,
    txtTramasDescartadas,
    txtDemandaLecturaEscritura,
    txtTimer,         ///< one a block
    txtTimerIpPuerto, ///< one a connection
    txtTimerEscritura,
    Text1,
    Text2,
    Ninguna
};

[[nodiscard]] std::string_view nombreDe(Caja caja);

/// The boxes in which an event has its line, in the order in which they get it.
struct SusCajas {
    Caja primera = Caja::Ninguna;
    Caja segunda = Caja::Ninguna;
};
[[nodiscard]] SusCajas cajasDe(const Suceso& s);

/// "1.1.10", or "1.1.10.3" for a bit: what an event of a write is about.
[[nodiscard]] std::string direccionEscrita(const Tablas& tablas, const Suceso& s);

/// The words for what happened: every line of every trace box is made here and nowhere else. Text
/// is only made where it is looked at.
class Redaccion {
  public:
    /// Both must outlive this.
    Redaccion(const Sucesos& sucesos, const Tablas& tablas) : sucesos_(sucesos), tablas_(tablas) {}
    /// Adds the event's line in `caja`, which must be one of its boxes, to the text.
    void redactar(const Suceso& s, Caja caja, std::string& texto) const;
    /// The number of the box where boxes are numbered, else -1.
    [[nodiscard]] static std::int64_t indiceEn(const Suceso& s, Caja caja);
    [[nodiscard]] const Sucesos& sucesos() const { return sucesos_; }

  private:
    [[nodiscard]] const std::string& sello(std::int64_t instante) const;
    void lineaDe(const Suceso& s, Caja caja, std::string& a) const;
    void lineaDeEstacion(const Suceso& s, Caja caja, std::string& a) const;
    void lineaDeLectura(const Suceso& s, std::string& a) const;
    void lineaDeEscritura(const Suceso& s, std::string& a) const;
    void lineaDeConexion(const Suceso& s, std::string& a) const;
    void lineaDePedido(const Suceso& s, std::string& a) const;
    void queYDonde(const Suceso& s, std::string_view separador, std::string& a) const;
    void agregarRecibido(const Suceso& s, std::string& a) const;
    void rechazo(const Suceso& s, std::string& a) const;

    const Sucesos& sucesos_;
    const Tablas& tablas_;
    mutable std::int64_t selladoSegundo_ = -1;
    mutable std::string sello_;
};

} // namespace kv
