// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "link/transaccion.h"
#include "log/archivo_log.h"
#include "plant/tablas.h"
#include "platform/bucle.h"

#include <cstdint>
#include <deque>

namespace kv {

/// Called when a connection is free: its next request may be chosen.
class AlQuedarLibre {
  public:
    virtual ~AlQuedarLibre() = default;
    virtual void alQuedarLibre(Indice conexion) = 0;
};

/// The rule of the connections, in one place. A connection is free, waiting for an answer, or
/// pausing; one request is outstanding at most, and a connection that is not free has exactly one
/// of its two timers running, which will free it whatever else goes wrong. Nothing is sent to a
/// station but through here.
class Turnos {
  public:
    Turnos(Bucle& bucle, Tablas& tablas, Sucesos& sucesos, ArchivoLog& log, AlQuedarLibre& destino);
    /// Adds the timers of one more connection, in the order of the connections. The socket must
    /// outlive this.
    void agregarConexion(Zocalo& zocalo);

    /// Pause between two requests, milliseconds; 0 means that the next follows at once.
    void fijarPausa(double ms) { pausaMs_ = ms; }
    [[nodiscard]] double pausa() const { return pausaMs_; }

    /// The link is up and the supervision has found it so. What came up since its last pass is not
    /// used yet: that pass begins the link anew, and would forget a request that is out on it.
    [[nodiscard]] bool conectada(Indice conexion) const;
    /// Connected and nothing outstanding.
    [[nodiscard]] bool libre(Indice conexion) const;

    enum class Envio : std::uint8_t {
        Hecho,    ///< sent; the connection waits
        Retenido, ///< held back until the line is quiet; the connection pauses and will be freed
        Imposible ///< not connected or not free: nothing happened
    };
    /// Sends a request of `de` on a free connection. `plazoMs` is how long its answer is waited
    /// for, above 0.
    Envio enviar(Indice conexion, Transaccion& de, const Solicitud& trama, std::int64_t plazoMs);
    /// The same for a request that goes on asking for `registro`, as `reenviar` does where the
    /// connection was not given free.
    Envio enviar(Indice conexion, Transaccion& de, const Solicitud& trama, std::int64_t plazoMs,
                 RespuestasDebidas::Registro registro);
    /// Whose request is outstanding; null on a connection that does not wait.
    [[nodiscard]] Transaccion* enCurso(Indice conexion) const {
        return companeros_[conexion].enCurso;
    }
    /// Sends again on a connection that waits for the same register. When the link is gone nothing
    /// is sent and the time-out runs on.
    void reenviar(Indice conexion, const Solicitud& trama, std::int64_t plazoMs);
    /// The running time-out ends after `ms` from now instead.
    void moverTiempoFuera(Indice conexion, std::int64_t ms);
    /// What would become of a request for `registro` on a free connection.
    [[nodiscard]] RespuestasDebidas::Permiso permiso(Indice conexion,
                                                     RespuestasDebidas::Registro registro) const;
    /// How long a silent block rests, ms. Where its neighbours pay for every try with a line that
    /// has to fall silent, that time is not theirs but the rest's.
    [[nodiscard]] std::int64_t descanso(const BloqueLectura& b) const;
    /// Closes the link so that nothing of what the other end does not have yet leaves any more. The
    /// next pass of the supervision finds it lost.
    void abortar(Indice conexion);
    /// The other end has acknowledged all that was sent.
    [[nodiscard]] bool llegoTodo(Indice conexion) const;
    /// The transaction is over, well or badly: time-out off, pause on, which an event says. On a
    /// connection that is not waiting it changes nothing.
    void pausar(Indice conexion);
    /// The same, with a pause that began at a moment just past, on the loop's clock.
    void pausar(Indice conexion, std::int64_t desdeUs);
    /// The link came up or was lost: nothing is outstanding, both timers are off, the receive
    /// buffer is empty.
    void olvidar(Indice conexion);
    /// The line may have become clean: if it was held back, it goes on.
    void revisarRetencion(Indice conexion);
    /// Ends a pause of no length. Called where handlers end.
    void terminarPausaCumplida(Indice conexion);

    void vaciarRecepcion(Indice conexion);

    /// How many of the connection's two timers run, for whoever checks the rule.
    [[nodiscard]] int temporizadoresEncendidos(Indice conexion) const;

  private:
    struct Companeros {
        Companeros(Turnos& turnos, Zocalo& suyo, Indice conexion);
        Zocalo& zocalo;
        Transaccion* enCurso = nullptr;
        Temporizador Timer_TimerPorIPPuerto;
        Temporizador Timer_IntervaloEntrePoleo;
    };
    void ticTiempoFuera(Indice conexion);
    void ticPausa(Indice conexion);
    void anotarFalla(Indice conexion, const char* que);
    void retener(Indice conexion, std::int64_t ms);
    void mandar(Indice conexion, const Solicitud& trama, std::int64_t plazoMs);

    Bucle& bucle_;
    Tablas& tablas_;
    Sucesos& sucesos_;
    ArchivoLog& log_;
    AlQuedarLibre& destino_;
    double pausaMs_ = 0;
    std::deque<Companeros> companeros_; // timers do not move
};

/// Command, station byte and address byte of a request: what its answer answers.
[[nodiscard]] inline RespuestasDebidas::Registro registroDe(const Solicitud& trama) {
    return RespuestasDebidas::Registro{trama[0]} << 16 |
           RespuestasDebidas::Registro{trama[1]} << 8 | trama[3];
}

} // namespace kv
