#pragma once

#include "core/tables/tablas.h"
#include "platform/bucle.h"
#include "platform/sello.h"
#include "ui/view/vista.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kv {

/// What happens when a turn ends; the poll and write folders answer.
class AlTerminarElTurno {
  public:
    virtual ~AlTerminarElTurno() = default;
    /// The response time-out of a waiting connection ticked.
    virtual void alVencerTiempoFuera(Indice conexion) = 0;
    /// The connection is free: its next request may be chosen.
    virtual void alQuedarLibre(Indice conexion) = 0;
    /// One of the two above ended with an exception; the connection has been seen to.
    virtual void alFallar(Indice conexion, const char* que) = 0;
};

/// The rule of the connections, in one place. A connection is free, waiting for an answer, or
/// pausing; `ocupada` is true from any send to the end of the pause, one request is outstanding at
/// most, and a connection that is not free has exactly one of its two timers running, which will
/// free it whatever else goes wrong. Nothing is sent to a station but through here.
class Turnos {
  public:
    Turnos(Bucle& bucle, Tablas& tablas, Vista& vista, Sello& sello);
    void avisarA(AlTerminarElTurno* destino) { destino_ = destino; }
    /// Makes the socket's companions of connection `k`: call once per connection, in order.
    void agregarConexion();
    void usarZocalo(Indice conexion, Zocalo* zocalo) { zocalos_[conexion] = zocalo; }

    /// Pause between two requests, milliseconds; 0 means that the next follows at once.
    void fijarPausa(double ms) { pausaMs_ = ms; }
    [[nodiscard]] double pausa() const { return pausaMs_; }

    /// The link is up and the supervision has found it so. What came up since its last pass is not
    /// used yet: that pass begins the link anew, and would forget a request that is out on it.
    [[nodiscard]] bool conectada(Indice conexion) const;
    /// Connected and nothing outstanding.
    [[nodiscard]] bool libre(Indice conexion) const;

    /// When to give up waiting: the first tick of the time-out, and all of it; both ms, above 0.
    struct Plazo {
        double baseMs;
        double totalMs;
    };
    [[nodiscard]] static Plazo plazoDe(const BloqueLectura& b) {
        return {b.tiempoFueraBaseMs, b.tiempoFueraSegundos * 1000};
    }

    enum class Envio : std::uint8_t {
        Hecho,    ///< sent; the connection waits
        Retenido, ///< held back until the line is quiet; the connection pauses and will be freed
        Imposible ///< not connected or not free: nothing happened
    };
    /// Sends a request on a free connection. `registro` tells what is asked for (see
    /// RespuestasDebidas).
    Envio enviar(Indice conexion, const Solicitud& trama, RespuestasDebidas::Registro registro,
                 Plazo plazo);
    /// Sends again on a connection that waits for the same register. False when the link is gone:
    /// nothing was sent and the time-out runs on.
    bool reenviar(Indice conexion, const Solicitud& trama, Plazo plazo);
    /// The next tick of the running time-out comes after `ms` instead.
    void acortarTiempoFuera(Indice conexion, double ms);
    /// The transaction is over, well or badly: time-out off, pause on. Traces the line that
    /// announces it. On a connection that is not waiting it changes nothing.
    void pausar(Indice conexion);
    /// The link came up or was lost: nothing is outstanding, both timers are off, the receive
    /// buffer is empty.
    void olvidar(Indice conexion);
    /// An answer came that nobody waited for: a line that was held back for it goes on.
    void revisarRetencion(Indice conexion);
    /// Ends a pause of no length. Called where handlers end.
    void terminarPausaCumplida(Indice conexion);

    static void vaciarRecepcion(ConexionIP& c);

    /// How many of the connection's two timers run, for whoever checks the rule.
    [[nodiscard]] int temporizadoresEncendidos(Indice conexion) const;

  private:
    struct Companeros {
        std::unique_ptr<Temporizador> Timer_TimerPorIPPuerto;
        std::unique_ptr<Temporizador> Timer_IntervaloEntrePoleo;
    };
    void ticTiempoFuera(Indice conexion);
    void ticPausa(Indice conexion);
    void retener(Indice conexion, std::int64_t ms);
    void mandar(Indice conexion, const Solicitud& trama, Plazo plazo);
    void tirarLoEmpezado(ConexionIP& c);

    Bucle& bucle_;
    Tablas& tablas_;
    Vista& vista_;
    Sello& sello_;
    AlTerminarElTurno* destino_ = nullptr;
    double pausaMs_ = 800;
    std::vector<Companeros> companeros_;
    std::vector<Zocalo*> zocalos_;
};

/// Command, station byte and address byte of a request: what its answer answers.
[[nodiscard]] inline RespuestasDebidas::Registro registroDe(const Solicitud& trama) {
    return RespuestasDebidas::Registro{trama[0]} << 16 |
           RespuestasDebidas::Registro{trama[1]} << 8 | trama[3];
}

} // namespace kv
