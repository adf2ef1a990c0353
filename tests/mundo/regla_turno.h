// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"

#include <functional>

namespace kv::mundo {

/// The rule of the connections, seen from outside: one request outstanding, never sooner than the
/// pause, repeated only after the time-out and so often as allowed, a timer for whoever is not
/// free, nobody idle with work to do, every due block in its turn.
class ReglaDeTurno {
  public:
    explicit ReglaDeTurno(Contexto& c) : c_(c) {}

    /// A read ended, well or badly: its block.
    std::function<void(Indice)> alTerminarLectura = [](Indice) {};

    /// Transactions so far, and which of them is the last of a connection.
    [[nodiscard]] std::uint64_t pedidos() const { return pedidos_; }
    [[nodiscard]] std::uint64_t pedido(std::size_t n) const { return seguidas_[n].pedido; }
    void alEnviar(std::size_t n, std::span<const std::uint8_t> bytes);
    /// After every event.
    void mirar();
    /// Every few seconds.
    void barrer();

  private:
    struct Seguida {
        EstadoDeTurno visto = EstadoDeTurno::Libre;
        std::int64_t desdeUs = 0; ///< of the state seen
        bool enVuelo = false;
        Solicitud ultima{};
        std::uint64_t enlace = 0;
        std::int64_t envioUs = 0;
        std::uint64_t pedido = 0;
        double pausaAlEnviarMs = 0;
        int envios = 0;           ///< of this transaction
        std::int64_t finUs = 0;   ///< of the last transaction
        double pausaMs = 0;       ///< that followed it
        double reintentos = 0;    ///< of the block being read, when last seen
        Indice bloque = kNinguno; ///< being read
        Indice bloqueAnterior = kNinguno;
        std::int64_t ociosaUs = -1;  ///< free with work to do since then
        int escrituras = 0;          ///< in a row while a read was due
        bool deEscritura = false;    ///< the transaction that is under way
        std::int64_t tomadaUs = 0;   ///< when it began
        std::int64_t leeHastaUs = 0; ///< reads have the line that a failing write had
    };

    void mirar(std::size_t n, Seguida& s);
    void terminar(std::size_t n, Seguida& s);
    void enlaceNuevo(std::size_t n, Seguida& s);
    void repeticion(std::size_t n, Seguida& s, const Solicitud& t);
    void nueva(std::size_t n, Seguida& s, const Solicitud& t);
    void turnos(std::size_t n, Seguida& s, const Solicitud& t);
    [[nodiscard]] bool cuenta(std::size_t n, std::size_t lugar) const;
    [[nodiscard]] bool aMedias(const ConexionIP& c) const;
    [[nodiscard]] bool conTrabajo(const ConexionIP& c) const {
        return !c.escrituras.empty() || c.porPolear.siguiente(0) != ConjuntoDePosiciones::kNinguna;
    }

    Contexto& c_;
    std::vector<Seguida> seguidas_;
    std::uint64_t pedidos_ = 0;
    std::vector<std::uint32_t> esperas_; ///< reads of others since a block is due, by block
};

} // namespace kv::mundo
