// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "events/sucesos.h"
#include "log/archivo_log.h"
#include "plant/tablas.h"
#include "platform/bucle.h"
#include "script/publicacion.h"
#include "server/log_acotado.h"
#include "server/puerta.h"
#include "server/sala.h"
#include "server/sesion.h"
#include "view/vista.h"

#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// The supervisory client's window, without the window: one client at a time is listened for,
/// served, kept alive and sent what changes. Several may wait to be known by their password; until
/// one is, the first of them is sent what a client is sent, if the door lets it. What goes to the
/// client in one turn of the loop leaves in one piece; a client that does not read two whole
/// synchronisations is closed.
class FrmServerTCP final : public AvisoAlCliente, private OyenteDeZocalo, private CableDelCliente {
  public:
    /// All that is given must outlive the server.
    FrmServerTCP(Bucle& bucle, const Tablas& tablas, Ajustes& ajustes, Vista& vista,
                 Sucesos& sucesos, ArchivoLog& log, OrdenesDelCliente& ordenes);
    FrmServerTCP(const FrmServerTCP&) = delete;
    FrmServerTCP& operator=(const FrmServerTCP&) = delete;

    /// Reads the settings, listens, and from then on serves. The first synchronisation goes to the
    /// first client that comes.
    void Form_Load();
    /// Listens, unless it does already.
    void escuchar();
    /// Sends one payload in its envelope if a client is connected. Lets events run.
    void enviarDatos(std::string_view carga) override;
    /// The program ends: what the client has sent is done.
    void terminar() {
        acabar();
        log_.terminar();
    }
    /// The read reply for an address on the wire's bytes; empty when there is no such variable.
    [[nodiscard]] std::string obtenerTramaParaENVIAR(std::string_view direccion) {
        return sesion_.obtenerTramaParaENVIAR(direccion);
    }
    void notificarVariable(std::string_view direccion, double valor, double estado) override;
    /// The link that gets what changes, else the one that listens.
    [[nodiscard]] const Zocalo& zocalo() const;

  private:
    void TimerEstado_Timer();
    void timer_keep_Alive_Timer();
    void timerDeSincronizmo_Timer();
    void leerAjustesDeConexion();
    [[nodiscard]] double ajuste(const AjusteNumerico& cual);
    void mostrarCliente();
    void vigilarPlazoDeLogin();
    void entra(Visita& visita);
    void acabar();
    void despedir(std::uint64_t numero, bool porCallar = false);

    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;
    void alPedirConexion(std::size_t indice, std::string_view remoto) override;

    void enviarSuelto(std::string_view bytes) override;
    void pedirSincronismo() override;
    void alContestarKeepAlive() override;
    void frenar(bool freno) override;
    [[nodiscard]] const Separadores& separadores() const override { return separadores_; }

    [[nodiscard]] bool conectado() const;
    [[nodiscard]] bool puedeSaber() const;
    void enviar(std::string_view bytes);
    void enviarSobre();
    void contarKeepAlive(Visita& visita, double maximo, bool toca);
    void anotarFalla(const Visita& visita);
    void quejarse(const std::string& queja);
    void anotarFallaDeEscucha();
    [[nodiscard]] bool sincronizar(std::uint64_t numero);
    [[nodiscard]] bool sincronizarDesde(std::size_t& i, std::uint64_t numero);
    [[nodiscard]] std::size_t limiteDeCola() const;

    Bucle& bucle_;
    const Tablas& tablas_;
    Ajustes& ajustes_;
    Vista& vista_;
    Sucesos& sucesos_;
    LogAcotado log_;
    Puerta puerta_;
    Sesion sesion_;
    Sala sala_;
    std::unique_ptr<Zocalo> wsEscucha_;
    std::unique_ptr<Temporizador> TimerEstado_;
    std::unique_ptr<Temporizador> timer_keep_Alive_;
    std::unique_ptr<Temporizador> timerDeSincronizmo_;

    double puertoEscucha_ = kPuertoEscucha.porDefecto;
    Separadores separadores_;
    std::string sobre_;          ///< the message being put together; empty while events run
    std::string escuchaEn_;      ///< "address:port", as it was asked for last
    std::string fallaDeEscucha_; ///< why listening failed, as it was logged last
    double tics_ = 0;            ///< of the keep-alive timer since the client last answered
    bool sincronizando_ = false; ///< a synchronisation is letting events run
    bool pedidoNuevo_ = false;   ///< and one more was asked for meanwhile
    /// Who was sent the last synchronisation without having logged in, 0: nobody.
    std::uint64_t sincronizado_ = 0;
    bool empezando_ = true; ///< the settings are looked at for the first time
    std::size_t mensajesSinCeder_ = 0;
};

} // namespace kv
