// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "plant/tablas.h"
#include "platform/bucle.h"
#include "server/log_acotado.h"
#include "server/mensajes.h"
#include "server/ordenes.h"
#include "server/puerta.h"
#include "view/vista.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// The wire to the client, as a session uses it.
class CableDelCliente {
  public:
    virtual ~CableDelCliente() = default;
    /// Bare bytes; dropped while nobody is connected.
    virtual void enviarSuelto(std::string_view bytes) = 0;
    /// A payload in its envelope, for one client only. Lets events run.
    virtual void enviarDatos(std::string_view carga) = 0;
    virtual void pedirSincronismo() = 0;
    virtual void alContestarKeepAlive() = 0;
    /// While the client is held nothing more of it comes, and what is sent to it waits.
    virtual void frenar(bool freno) = 0;
    [[nodiscard]] virtual const Separadores& separadores() const = 0;
};

/// The client that is being served: what it asks for. One object serves one client after the other;
/// while an order lets events run, another arrival, and another client, may come.
///
/// An arrival may hold thousands of orders. Some are done at once, the others by a timer, so much
/// at a time, so that no client costs the stations their turn; until all is done the client is
/// held, and an arrival that comes inside of another waits for its end.
class Sesion {
  public:
    Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, Sucesos& sucesos, LogAcotado& log,
           Puerta& puerta, OrdenesDelCliente& ordenes, CableDelCliente& cable);

    /// Whether an arrival from `remoto` ("address:port"), who is not known yet, is the password.
    [[nodiscard]] bool identificar(std::string_view llegada, std::string_view remoto);
    /// A new client. What is left to do for the one before is dropped.
    void empezar(std::string_view remoto);
    /// The client has gone: what is left to do for it is dropped.
    void terminar();
    /// Everything that arrived at once. Nothing of it is kept for the next arrival.
    void atender(std::string_view llegada);
    /// Does all that has arrived, however long it takes: nobody will come back to it. Inside an
    /// order it does nothing.
    void acabar();

    /// The record of a variable, with the address as it came (the wire's bytes). Empty when there
    /// is no such variable; the address is then polled.
    [[nodiscard]] std::string obtenerTramaParaENVIAR(std::string_view direccion);

  private:
    /// Number of a client, by which work for one that has gone is recognised.
    using Numero = std::uint64_t;
    struct Llegada {
        Numero de;
        std::string memoria; ///< what was not taken yet
        std::size_t paso = 0;
        bool partida = false; ///< `tramas` holds the frames of this step
        Tramas tramas{};
        std::size_t hechas = 0; ///< of them
    };
    static constexpr Numero kDeNadie = static_cast<Numero>(-1);
    class Tanda;
    class Trabajo;
    struct Paso;
    static const Paso kPasos[];

    void anotar(std::string_view llegada);
    void anotarFalla(std::string_view que, std::string_view memoria, std::string_view de);
    [[nodiscard]] bool esClave(std::string_view llegada, std::string_view remoto);
    void trabajar(Tanda tanda);
    [[nodiscard]] bool adelantar(Llegada& llegada, Tanda& tanda);
    [[nodiscard]] bool servir(Llegada& llegada, Tanda& tanda);
    [[nodiscard]] bool porTramas(Llegada& llegada, const Paso& paso, Tanda& tanda);
    void frenar(bool freno);
    void escribirUna(std::string_view contenido);
    void forzarUna(std::string_view contenido);
    void leerUna(std::string_view contenido);
    [[nodiscard]] std::string quien() const;
    void contestarKeepAlive(std::string& memoria);

    Bucle& bucle_;
    const Tablas& tablas_;
    Vista& vista_;
    Sucesos& sucesos_;
    LogAcotado& log_;
    Puerta& puerta_;
    OrdenesDelCliente& ordenes_;
    CableDelCliente& cable_;
    Numero numero_ = 0;
    std::string remoto_;
    std::string origen_;           ///< the same, as who wants a write
    std::deque<Llegada> llegadas_; ///< in their order; while an order runs, the first is its own
    bool trabajando_ = false;
    bool freno_ = false;
    std::unique_ptr<Temporizador> seguir_;
};

} // namespace kv
