#pragma once

#include "core/tables/tablas.h"
#include "platform/bucle.h"
#include "server/log_acotado.h"
#include "server/mensajes.h"
#include "server/ordenes.h"
#include "server/puerta.h"
#include "ui/view/vista.h"

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

/// The client that is being served: its login, and what it asks for. One object serves one client
/// after the other; while an order lets events run, another arrival, and another client, may come.
class Sesion {
  public:
    Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, LogAcotado& log, Puerta& puerta,
           OrdenesDelCliente& ordenes, CableDelCliente& cable);

    /// A new client, from `remoto` ("address:port"). What is left to do for the one before is
    /// dropped.
    void empezar(std::string_view remoto);
    /// Everything that arrived at once. Nothing of it is kept for the next arrival.
    void atender(std::string_view llegada);
    [[nodiscard]] bool logueada() const { return logueada_; }
    [[nodiscard]] const std::string& remoto() const { return remoto_; }
    /// Seconds since the client came.
    [[nodiscard]] double edad() const;

    /// The record of a variable, with the address as it came (the wire's bytes). Empty when there
    /// is no such variable; the address is then polled.
    [[nodiscard]] std::string obtenerTramaParaENVIAR(std::string_view direccion);

  private:
    /// Number of a client, so that work for one that has gone can be told.
    using Numero = std::uint64_t;
    void anotar(std::string_view llegada);
    void identificar(std::string_view llegada);
    void servir(std::string_view llegada);
    [[nodiscard]] std::string escribir(std::string_view llegada);
    void escribirUna(std::string_view contenido);
    [[nodiscard]] std::string forzar(std::string_view llegada);
    [[nodiscard]] std::string leer(std::string_view llegada);
    void contestarKeepAlive(std::string& resto);
    [[nodiscard]] std::string_view ip() const;

    Bucle& bucle_;
    const Tablas& tablas_;
    Vista& vista_;
    LogAcotado& log_;
    Puerta& puerta_;
    OrdenesDelCliente& ordenes_;
    CableDelCliente& cable_;
    Numero numero_ = 0;
    bool logueada_ = false;
    std::string remoto_;
    std::int64_t desdeMs_ = 0;
};

} // namespace kv
