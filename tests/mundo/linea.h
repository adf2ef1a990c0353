#pragma once

#include "link/Modulo_Tramas_KV2200.h"
#include "mundo/plan.h"
#include "platform/simulated/red_simulada.h"

#include <array>
#include <bitset>
#include <deque>
#include <span>
#include <unordered_map>
#include <vector>

namespace kv::mundo {

/// A register of a station. Its values come from a band that no other register of the plant has, so
/// that a value in a wrong place shows; a band is a power of two wide.
struct Registro {
    std::uint16_t base = 0;
    std::uint16_t mascara = 0; ///< width of the band, less one
    std::uint16_t valor = 0;
    std::uint32_t version = 0;
    Fuente fuente = Fuente::Nadie;
    /// Values of answers that left on the present link, oldest first, and were not yet seen to be
    /// published.
    std::deque<std::int16_t> enviados;
};

/// All stations behind one address, and what goes wrong with them. Everything they do follows from
/// what they are asked and from the faults they are told; they draw nothing.
class Linea final : public ExtremoSimulado {
  public:
    Linea(RedSimulada& red, const Reloj& reloj, const PlanDeConexion& plan)
        : red_(red), reloj_(reloj), plan_(plan) {}

    void alConectar(IdEnlace enlace) override;
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override;
    void alCortarse(IdEnlace enlace) override;

    [[nodiscard]] Registro& registro(std::uint8_t estacion, std::uint8_t direccion);
    /// Puts a register into a band of its own; before the start.
    void darBanda(std::uint8_t estacion, std::uint8_t direccion, std::uint16_t base,
                  std::uint16_t mascara, Fuente fuente);
    /// Whether an answer with that value can have been published for the register: it was sent on
    /// this link and no later one was published before. On a line with garbage, whether any frame
    /// that a receiver can make out of the bytes sent had that value.
    [[nodiscard]] bool pudoLlegar(std::uint8_t estacion, std::uint8_t direccion,
                                  std::int16_t valor);
    /// Whether an answer with that value left on this link, as far back as is remembered.
    [[nodiscard]] bool respondio(std::uint8_t estacion, std::uint8_t direccion, std::int16_t valor);

    // Faults. `cuantas` requests from now on are concerned.
    void demorar(std::uint32_t cuantas, std::int64_t us) {
        demorarProximas_ = cuantas, extraUs_ = us;
    }
    void perder(std::uint32_t cuantas) { perderProximas_ = cuantas; }
    void partir(std::uint32_t cuantas, std::uint32_t enPedazos) {
        partirProximas_ = cuantas, pedazos_ = enPedazos;
    }
    void callar(std::uint8_t estacion, std::int64_t hastaUs) { calladas_[estacion] = hastaUs; }
    void duplicar(std::uint32_t cuantas) { duplicarProximas_ = cuantas; }
    void danar(std::uint32_t cuantas, std::uint32_t bit) { danarProximas_ = cuantas, bit_ = bit; }
    void trocar() { trocar_ = true; }
    void mandarSuelto(std::span<const std::uint8_t> bytes);
    /// Its registers start anew, as after a power cut.
    void reiniciar();
    void cortar() { red_.cortar(enlace_); }
    void interrumpir() { red_.interrumpir(enlace_); }
    /// No fault is left.
    void sanar();

    /// One of its stations.
    [[nodiscard]] std::uint8_t estacion(std::size_t cual) const {
        return estaciones_.empty() ? 0 : estaciones_[cual % estaciones_.size()];
    }
    [[nodiscard]] IdEnlace enlace() const { return enlace_; }
    [[nodiscard]] const PlanDeConexion& plan() const { return plan_; }
    [[nodiscard]] std::uint64_t respuestas() const { return respuestas_; }

  private:
    void atender(const Solicitud& s);
    void responder(const Solicitud& s, Registro& r);
    void mandar(std::span<const std::uint8_t> bytes, std::int64_t us);
    void mirarPasar(std::span<const std::uint8_t> bytes);

    RedSimulada& red_;
    const Reloj& reloj_;
    PlanDeConexion plan_;
    IdEnlace enlace_ = 0;
    std::vector<std::uint8_t> entrada_;
    std::unordered_map<std::uint32_t, Registro> registros_;
    std::vector<std::uint8_t> estaciones_;
    std::unordered_map<std::uint8_t, std::int64_t> calladas_;
    std::uint32_t demorarProximas_ = 0, perderProximas_ = 0, partirProximas_ = 0;
    std::uint32_t duplicarProximas_ = 0, danarProximas_ = 0;
    std::int64_t extraUs_ = 0;
    std::uint32_t pedazos_ = 1, bit_ = 0;
    bool trocar_ = false;
    std::vector<std::uint8_t> guardada_; ///< an answer that waits to be swapped with the next
    std::array<std::uint8_t, kLargoRespuesta> pasan_{};
    std::bitset<65536> vistos_; ///< values of all frames that can be made out of what was sent
    std::uint64_t respuestas_ = 0;
};

} // namespace kv::mundo
