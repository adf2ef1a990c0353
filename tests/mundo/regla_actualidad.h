#pragma once

#include "link/lectura.h"
#include "mundo/contexto.h"

#include <vector>

namespace kv::mundo {

/// What says OK was answered lately: within a time that follows from the plant's own figures. Bits
/// are their register's, and check boxes show what is polled.
class ReglaDeActualidad final : public AlContestarEstacion {
  public:
    explicit ReglaDeActualidad(Contexto& c) : c_(c) {}

    /// An answer to a read of the block was accepted.
    void alContestar(Indice bloque) override;
    /// The block was answered, by whatever transaction.
    void anotar(Indice bloque);
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
        std::uint64_t escrituras = 0; ///< of its connection, when it was answered
    };
    [[nodiscard]] Visto& visto(Indice bloque);
    [[nodiscard]] std::uint64_t& escrituras(std::size_t conexion);
    [[nodiscard]] std::int64_t plazoMs(const BloqueLectura& b, std::uint64_t escrituras) const;
    void reciente(const BloqueLectura& b);
    void casillas(const BloqueLectura& b);

    Contexto& c_;
    std::vector<Visto> vistos_;
    std::vector<std::uint64_t> escrituras_; ///< ended, by connection
};

} // namespace kv::mundo
