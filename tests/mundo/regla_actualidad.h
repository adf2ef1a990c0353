// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "mundo/contexto.h"
#include "mundo/regla_turno.h"

#include <functional>
#include <vector>

namespace kv::mundo {

/// What says OK was answered lately: within a time that follows from the plant's own figures. Bits
/// are their register's, and check boxes show what is polled.
class ReglaDeActualidad final : public OyenteDeSucesos {
  public:
    ReglaDeActualidad(Contexto& c, const ReglaDeTurno& turno) : c_(c), turno_(turno) {}

    std::function<void(Indice)> alLeer = [](Indice) {};
    /// Looks for answers to reads that were accepted.
    void alSuceder(const kv::Suceso& suceso, std::string_view texto) override;
    /// The block was answered, by whatever transaction.
    void anotar(Indice bloque);
    /// The block is read so many times by force from now on; 0: not any more, or how many is not
    /// known.
    void forzar(Indice bloque, std::uint32_t veces);
    /// A write of the connection has ended.
    void alTerminarEscritura(std::size_t conexion);
    void barrer();
    /// Those of a block, as soon as one was made.
    void bitsIguales(Indice bloque);

  private:
    struct Visto {
        std::int64_t respuestaUs = 0;
        bool activo = false;
        std::int64_t scanMs = -1;
        std::uint64_t escrituras = 0;  ///< of its connection, when it was answered
        std::uint32_t forzadas = 0;    ///< reads that are still to come
        std::uint64_t forzadaTras = 0; ///< transactions
        bool activoAntes = false;
    };
    [[nodiscard]] Visto& visto(Indice bloque);
    [[nodiscard]] std::uint64_t& escrituras(std::size_t conexion);
    [[nodiscard]] std::int64_t plazoMs(const BloqueLectura& b, std::uint64_t escrituras) const;
    void contarForzada(const BloqueLectura& b);
    void reciente(const BloqueLectura& b);
    void casillas(const BloqueLectura& b);

    Contexto& c_;
    const ReglaDeTurno& turno_;
    std::vector<Visto> vistos_;
    std::vector<std::uint64_t> escrituras_; ///< ended, by connection
};

} // namespace kv::mundo
