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

#include <cstdint>
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
    [[nodiscard]] virtual const Separadores& separadores() const = 0;
};

/// The client that is being served: what it asks for. One object serves one client after the other;
/// while an order lets events run, another arrival, and another client, may come.
class Sesion {
  public:
    Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, Sucesos& sucesos, LogAcotado& log,
           Puerta& puerta, OrdenesDelCliente& ordenes, CableDelCliente& cable);

    /// Whether an arrival from `remoto` ("address:port"), who is not known yet, is the password.
    [[nodiscard]] bool identificar(std::string_view llegada, std::string_view remoto);
    /// A new client. What is left to do for the one before is dropped.
    void empezar(std::string_view remoto);
    /// The client has gone: what is left to do for it is dropped.
    void terminar() { ++numero_; }
    /// Everything that arrived at once. Nothing of it is kept for the next arrival.
    void atender(std::string_view llegada);

    /// The record of a variable, with the address as it came (the wire's bytes). Empty when there
    /// is no such variable; the address is then polled.
    [[nodiscard]] std::string obtenerTramaParaENVIAR(std::string_view direccion);

  private:
    /// Number of a client, so that work for one that has gone can be told.
    using Numero = std::uint64_t;
    void anotar(std::string_view llegada);
    void anotarFalla(std::string_view que, std::string_view memoria);
    [[nodiscard]] bool esClave(std::string_view llegada, std::string_view remoto);
    void servir(std::string& memoria);
    template <class F>
    [[nodiscard]] bool porTramas(std::string& memoria, const Marcas& marcas, F hacer);
    void escribirUna(std::string_view contenido);
    void forzarUna(std::string_view contenido);
    void leerUna(std::string_view contenido);
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
};

} // namespace kv
