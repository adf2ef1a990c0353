#pragma once

#include "link/turno.h"
#include "platform/arreglo_de_temporizadores.h"
#include "poll/poleo.h"
#include "script/publicacion.h"
#include "ui/view/vista.h"

#include <deque>
#include <memory>

namespace kv {

/// How a write ended.
enum class FinDeEscritura : std::uint8_t {
    Confirmada,
    SinRespuesta,
    ConexionPerdida,
    PalabraDesconocida
};

/// Hears of every write that ends; for records that outlive the write table.
class AlTerminarEscritura {
  public:
    virtual ~AlTerminarEscritura() = default;
    virtual void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) = 0;
    /// A request that became no write at all.
    virtual void alRechazar(std::string_view direccion, double valor, std::string_view origen,
                            std::string_view motivo) = 0;
};

/// Carries writes out: sends them one at a time in the order in which they were asked for, reads
/// back what was not answered, tries again, and confirms or gives up each exactly once. A
/// connection that is lost gives up its writes: a command must not reach a machine hours later
/// because a cable was plugged in.
class EjecucionDeEscrituras final : public TurnoDeEscrituras {
  public:
    EjecucionDeEscrituras(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                          Vista& vista, Sello& sello);
    void avisarA(AlTerminarEscritura* destino) { destino_ = destino; }
    [[nodiscard]] AlTerminarEscritura* avisado() const { return destino_; }
    /// Interval of the reclaim of finished records, ms, above 0.
    void fijarReclamo(double ms);

    /// Enters a write into the table and its connection's list; gives its index.
    Indice tomarLugar(BloqueEscritura nueva);
    /// Sends the write if it is still to be done and its connection is free.
    Turnos::Envio polearBloque_De_Escritura(Indice i);
    bool enviarSiguiente(Indice conexion) override;
    /// A valid answer that belongs to the connection's write came.
    void interpretarTramaRecepcionada_PorEscritura(Indice conexion);
    /// An answer came that may be another request's. It tells nothing of the write, which is read
    /// back at its time-out, even where no retries are allowed.
    void respuestaDudosa(Indice conexion);
    /// Tick of the time-out of a connection that waits for the answer to a write.
    void ticDeEscritura(Indice conexion);
    void alPerderConexion(Indice conexion);
    void Timer_Escrituras_Timer(std::size_t i);
    /// Takes the table back to a single spare record when no write is left to do.
    void buscarEscriturasRealizadas();
    /// Starts the reclaim timer if it is off.
    void pedirReclamo() { TimerEscriturasEnDesuso_->habilitar(true); }
    /// Writes that are neither confirmed nor given up.
    [[nodiscard]] std::size_t enEspera() const { return enEspera_; }

    ArregloDeTemporizadores Timer_Escrituras;

  private:
    [[nodiscard]] bool ponerPalabra(BloqueEscritura& e) const;
    void polear_ConfirmacionEscritura(Indice i);
    void reintentarBloque_eSCRITURA(Indice i);
    void repetir(Indice i, std::string_view rotulo, const Solicitud& trama,
                 const std::string& traza);
    void abandonar(Indice i, FinDeEscritura fin);
    void terminar(Indice i, FinDeEscritura fin);

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    Vista& vista_;
    Sello& sello_;
    AlTerminarEscritura* destino_ = nullptr;
    std::unique_ptr<Temporizador> TimerEscriturasEnDesuso_;
    std::size_t enEspera_ = 0;
    std::deque<Indice> terminadas_; ///< records that a new write may take
};

} // namespace kv
