// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "platform/bucle.h"
#include "view/vista.h"

#include <memory>
#include <string>
#include <vector>

namespace kv {

/// The settings that the connection manager reads while it works.
class AjustesDeConexion {
  public:
    virtual ~AjustesDeConexion() = default;
    [[nodiscard]] virtual double tiempoEntrePoleo() = 0;  ///< ms
    [[nodiscard]] virtual double baseDeSolicitudes() = 0; ///< ms, above 0
    [[nodiscard]] virtual double intervalosEnEstadoConectando() = 0;
    [[nodiscard]] virtual double intervalosDeConectarSeguidos() = 0;
    [[nodiscard]] virtual double intervalosTiempoFuera() = 0;
};

/// Those whom the state of a connection concerns.
class AlCambiarConexion {
  public:
    virtual ~AlCambiarConexion() = default;
    virtual void activarPoling_En_Socket(Indice conexion) = 0;
    virtual void desActivarPoling_En_Socket(Indice conexion) = 0;
    virtual void establecerBAD_En_Socket(Indice conexion) = 0;
};

/// The connection manager: owns the sockets, shows their states, switches polling on and off when
/// they change, and asks lost stations for a connection at a measured pace: some attempts, a pause,
/// and again.
class GestorDeConexiones {
  public:
    GestorDeConexiones(Bucle& bucle, Tablas& tablas, Turnos& turnos, OyenteDeZocalo& recepcion,
                       Sucesos& sucesos, Vista& vista, AjustesDeConexion& ajustes,
                       AlCambiarConexion& destino);

    /// The socket of one connection more, which has the connection's number.
    void levantarZocalo();
    /// Closes the link of a connection that is no longer configured, for ever.
    void retirar(Indice n);
    /// One supervision pass over all connections.
    void estadoConexiones();
    /// Starts the periodic supervision.
    void habilitarSupervision() { TimerConexiones_->habilitar(true); }
    /// Why a link is not up, as far as is known: how it was lost, until the supervision has seen
    /// that it was, and then how the last attempt ended; empty: nothing is known yet.
    [[nodiscard]] std::string porQueNoHayEnlace(Indice n) const;
    /// Milliseconds until the next attempt to connect one that is not.
    [[nodiscard]] std::int64_t proximoIntentoMs(Indice n) const;
    [[nodiscard]] Zocalo& wsSocket(Indice i) { return *wsSocket_[i]; }
    [[nodiscard]] const Zocalo& wsSocket(Indice i) const { return *wsSocket_[i]; }

  private:
    void supervisar(Indice n, bool& hacenFaltaSolicitudes);
    void pasarA(Indice n, bool conectada);
    void ticSolicitarConexion();
    void solicitar(Indice n);
    void refrescarFila(Indice n);
    void anotarMotivo(Indice n);
    [[nodiscard]] bool perdidaSinVer(Indice n) const;

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    OyenteDeZocalo& recepcion_;
    Sucesos& sucesos_;
    Vista& vista_;
    AjustesDeConexion& ajustes_;
    AlCambiarConexion& destino_;
    std::vector<std::unique_ptr<Zocalo>> wsSocket_;
    std::unique_ptr<Temporizador> TimerConexiones_;
    std::unique_ptr<Temporizador> timer_SolicitarConexion_;
    // As the settings say, from the first pass on that finds a link missing.
    double intervalosEnEstadoConectando_ = 0;
    double intervalosDeConectarSeguidos_ = 0;
    double intervalosTiempoFuera_ = 0;
};

} // namespace kv
