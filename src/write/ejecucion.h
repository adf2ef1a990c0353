// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/fin_de_escritura.h"
#include "link/turno.h"
#include "plant/duraciones.h"
#include "poll/estaciones_mudas.h"
#include "poll/poleo.h"
#include "script/publicacion.h"

#include <deque>
#include <memory>

namespace kv {

/// Carries writes out: sends them one at a time in the order in which they were asked for, reads
/// back what was not answered, tries again, and confirms or gives up each exactly once. The
/// register of a bit is read just before, so that the other fifteen stay what the plant made them.
///
/// What has been given up never reaches a station: a connection that is lost gives up its writes,
/// and a link that still holds bytes of one is reset, since a command must not reach a machine
/// hours later because a cable was plugged in. Nor is one carried out that has waited for too long.
///
/// A write that a station does not answer must not freeze the values of the others: after each of
/// its time-outs reads that are due have the line for as long as it had it. Where their answers
/// could not be told apart from its own late one, they have it when its tries are over.
class EjecucionDeEscrituras final : public TurnoDeEscrituras, public Transaccion {
  public:
    EjecucionDeEscrituras(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                          EstacionesMudas& mudas, Sucesos& sucesos);
    /// Seconds that a write may wait; 0: for ever.
    void fijarVigencia(double segundos) { vigenciaMs_ = milisegundos(segundos); }
    /// Interval of the reclaim of finished records, ms, above 0.
    void fijarReclamo(double ms);

    /// Enters a write into the table and its connection's list; gives its index.
    Indice tomarLugar(BloqueEscritura nueva);
    /// Does the write's next step if it is still to be done and its connection is free.
    Turnos::Envio polearBloque_De_Escritura(Indice i);
    bool enviarSiguiente(Indice conexion) override;
    [[nodiscard]] bool aMedias(Indice conexion) const override;
    void contestada(Indice conexion, const Respuesta& respuesta) override;
    /// Tells nothing of a word that has left, which is read back when the line has been quiet, even
    /// where no retries are allowed.
    void dudosa(Indice conexion) override;
    void vencida(Indice conexion) override;
    void perdida(Indice conexion) override;
    [[nodiscard]] Indice bloqueQueLee(Indice /*conexion*/) const override { return kNinguno; }
    /// The connection is lost: all its writes end.
    void alPerderConexion(Indice conexion);
    /// A register is no longer configured: its writes that have not left end.
    void alRetirar(Indice bloque);
    /// The program ends: what waits or is under way does so too, and does not leave any more.
    void alTerminarElPrograma();
    /// Empties the table when no write is left to do.
    void buscarEscriturasRealizadas();
    /// Starts the reclaim timer if it is off.
    void pedirReclamo() { TimerEscriturasEnDesuso_->habilitar(true); }
    /// Writes that are neither confirmed nor given up.
    [[nodiscard]] std::size_t enEspera() const { return enEspera_; }

  private:
    [[nodiscard]] bool esVieja(const BloqueEscritura& e) const;
    [[nodiscard]] bool estaFuera(const BloqueEscritura& e) const;
    [[nodiscard]] BloqueEscritura* enCurso(Indice conexion);
    /// The block that reads the register that is written.
    [[nodiscard]] const BloqueLectura& leidoDe(const BloqueEscritura& e) const {
        return tablas_.bloques[e.indiceBloqueLectura];
    }
    void decir(Que que, const BloqueEscritura& e);
    void vencerViejas();
    [[nodiscard]] Turnos::Envio leerPalabra(BloqueEscritura& e);
    [[nodiscard]] Turnos::Envio escribirPalabra(BloqueEscritura& e);
    [[nodiscard]] Turnos::Envio retomar(BloqueEscritura& e);
    [[nodiscard]] const Solicitud& tramaDe(const BloqueEscritura& e, Que que) const;
    void alLeerPalabra(BloqueEscritura& e, std::int16_t valor);
    void combinar(BloqueEscritura& e, std::int16_t valor);
    [[nodiscard]] bool confirma(BloqueEscritura& e, std::int16_t valor);
    void otroIntento(BloqueEscritura& e);
    void abandonar(Indice i, FinDeEscritura fin);
    void terminar(Indice i, FinDeEscritura fin);

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    EstacionesMudas& mudas_;
    Sucesos& sucesos_;
    std::int64_t vigenciaMs_ = 0;
    std::unique_ptr<Temporizador> TimerEscriturasEnDesuso_;
    std::size_t enEspera_ = 0;
    std::deque<Indice> terminadas_; ///< records that a new write may take
};

} // namespace kv
