#pragma once

#include "mundo/contexto.h"
#include "write/ejecucion.h"

#include <map>
#include <string>
#include <unordered_map>

namespace kv::mundo {

/// Every write asked for is refused at once, or ends exactly once; those of a register end, and
/// reach the wire, in the order in which they were asked for; none is sent after its end, or over a
/// link that came up after it was asked for. The value of a write tells its place in the order: the
/// writer of a register counts up through the register's band.
class ReglaDeEscrituras final : public AvisoDeEscritura {
  public:
    struct Escritor {
        Linea* linea = nullptr;
        std::uint16_t base = 0, mascara = 0;
        Fuente fuente = Fuente::Nadie;
        std::size_t conexion = 0;
        std::string direccion;
        std::uint64_t pedidas = 0; ///< by who counts them here: operator and client
        std::uint64_t aceptadas = 0, terminadas = 0, rechazadas = 0;
        std::uint64_t ultimaTerminada = 0, ultimaEnviada = 0;
        std::uint64_t rechazadasVistas = 0; ///< refused before the last that was sent or ended
        std::map<std::uint64_t, std::uint64_t> enlaces; ///< link at acceptance, by number of write
        /// The value that write number `k` writes.
        [[nodiscard]] std::uint16_t valor(std::uint64_t k) const {
            return static_cast<std::uint16_t>(base + (k & mascara));
        }
    };

    ReglaDeEscrituras(Contexto& c, AvisoDeEscritura& siguiente) : c_(c), siguiente_(siguiente) {}

    Escritor& agregar(Escritor escritor, std::uint8_t estacion, std::uint8_t registro);
    [[nodiscard]] std::vector<Escritor*>& de(Fuente fuente) {
        return porFuente_[static_cast<std::size_t>(fuente)];
    }
    /// The operator writes the register's next value.
    void escribirAMano(Escritor& e);

    void alEnviar(std::size_t n, const Solicitud& trama);
    void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) override;
    void alRechazar(const Rechazo& rechazo) override;
    void alFundir(const BloqueEscritura& e, std::string_view origen) override {
        siguiente_.alFundir(e, origen);
    }
    void alSalir(const BloqueEscritura& e) override { siguiente_.alSalir(e); }
    void barrer();
    /// When nothing is pending: nothing was lost.
    void alFinal();

  private:
    [[nodiscard]] Escritor* buscar(std::size_t conexion, std::uint8_t estacion,
                                   std::uint8_t registro);
    /// Number of the write whose value this is, given that it lies near the last one sent or ended.
    [[nodiscard]] static std::uint64_t numero(const Escritor& e, std::uint16_t valor);

    Contexto& c_;
    AvisoDeEscritura& siguiente_;
    std::unordered_map<std::uint64_t, Escritor> escritores_;
    std::unordered_map<std::string, Escritor*> porDireccion_;
    std::array<std::vector<Escritor*>, 5> porFuente_;
    std::size_t masEnEspera_ = 0;           ///< writes that ever waited at the same time
    std::vector<std::int64_t> sinEnlaceUs_; ///< by connection: writes wait and there is no link
};

} // namespace kv::mundo
