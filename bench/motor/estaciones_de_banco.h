// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <sys/types.h>

namespace kv::banco {

/// What the stations saw between two of their own answers and the requests that followed.
struct Atrasos {
    double minimoMs; ///< shortest time from an answer to the next request on the same link
    double p50Ms;
    double p99Ms;
    double maximoMs;
    std::uint64_t cuantos;
};

/// Stations in a process of their own: they answer every request at once, each time with another
/// value. They listen on all of 127.0.0.0/8, so that every connection has an address of its own.
class EstacionesDeBanco {
  public:
    EstacionesDeBanco();
    ~EstacionesDeBanco();
    EstacionesDeBanco(const EstacionesDeBanco&) = delete;
    EstacionesDeBanco& operator=(const EstacionesDeBanco&) = delete;
    [[nodiscard]] std::uint16_t puerto() const { return puerto_; }
    /// Forgets what was seen so far.
    void olvidar() const;
    /// From now on the links come one after the other over so many ms instead of all at once.
    void repartir(double ms) const;
    /// From now on they never sleep: who sends to one that sleeps on the same machine pays for
    /// waking it, as no driver does whose stations are elsewhere. Lateness is not kept any more.
    void velar() const;
    [[nodiscard]] Atrasos atrasos() const;

  private:
    pid_t hijo_ = -1;
    int ordenes_ = -1;
    int informes_ = -1;
    std::uint16_t puerto_ = 0;
};

/// Processor time of this process, seconds; not that of the stations.
struct Procesador {
    double total;
    double fueraDelNucleo;
};
[[nodiscard]] Procesador tiempoDeProcesador();
/// As many open files as the machine allows.
void permitirMuchosArchivos();

} // namespace kv::banco
