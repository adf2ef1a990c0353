// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/plan.h"
#include "platform/simulated/red_simulada.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <array>
#include <deque>
#include <functional>
#include <span>
#include <unordered_map>
#include <vector>

namespace kv::mundo {

/// A register of a station. Its values come from a band that no other register of the plant has, so
/// that a value in a wrong place shows; a band is a power of two wide. Now and then those that
/// nobody writes have all the same value, and bits of those written bit by bit change by
/// themselves.
struct Registro {
    /// An answer that left, and when it arrives.
    struct Enviado {
        std::int16_t valor;
        std::int64_t llegaUs;
    };
    std::uint16_t base = 0;
    std::uint16_t mascara = 0; ///< width of the band, less one
    std::uint16_t valor = 0;
    std::uint32_t version = 0;
    std::int64_t cambioUs = -1; ///< by itself
    Fuente fuente = Fuente::Nadie;
    /// Answers of the present link, oldest first, that were not yet seen to be published.
    std::deque<Enviado> enviados;
};

/// A write has reached a station, perhaps over a link that is not the present one.
struct EscrituraLlegada {
    IdEnlace enlace;
    std::uint8_t estacion, registro;
    std::uint16_t palabra, antes;
};

/// What becomes of who wants to connect to an address.
enum class Llegada : std::uint8_t {
    Entra,
    Rechazada,
    SinRuta,      ///< at once
    SinRutaLuego, ///< after some seconds in which nobody says that he has the address
    SinRed,
    Reiniciada,   ///< up, and reset before it was of any use
    SinRespuesta, ///< until the kernel gives up
    Muda,         ///< for ever
    SinNombre,    ///< nobody knows the name
    Cuantas
};

/// All stations behind one address, and what goes wrong with them. Everything they do follows from
/// what they are asked and from the faults they are given; they draw nothing.
///
/// An answer leaves within 2.9 time-outs of its request or never: no receiver could tell later ones
/// apart from others.
class Linea final : public ExtremoSimulado {
  public:
    Linea(RedSimulada& red, const Reloj& reloj, const PlanDeConexion& plan)
        : red_(red), reloj_(reloj), plan_(plan) {}

    void alConectar(IdEnlace enlace) override;
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override;
    void alCortarse(IdEnlace enlace) override;

    std::function<void(const EscrituraLlegada&)> alEscribirse = [](const EscrituraLlegada&) {};
    /// The driver's pause between two requests, in which a second copy of an answer may come.
    std::function<double()> pausaMs = [] { return 0.0; };

    [[nodiscard]] Registro& registro(std::uint8_t estacion, std::uint8_t direccion);
    /// Puts a register into a band of its own; before the start.
    void darBanda(std::uint8_t estacion, std::uint8_t direccion, std::uint16_t base,
                  std::uint16_t mascara, Fuente fuente);
    /// Whether an answer with that value can have been published for the register: it was sent on
    /// this link and no later one was published before.
    [[nodiscard]] bool pudoLlegar(std::uint8_t estacion, std::uint8_t direccion,
                                  std::int16_t valor);
    /// Whether an answer of the register whose bits under `mascara` are those of `valor` has come
    /// since `desdeUs` on this link, as far back as is remembered.
    [[nodiscard]] bool respondio(std::uint8_t estacion, std::uint8_t direccion, std::uint16_t valor,
                                 std::int64_t desdeUs, std::uint16_t mascara = 0xFFFF);
    /// A frame that no station sent, formed by noise, came a moment ago: what the driver makes of
    /// it, and of what it upsets, is nobody's fault. Counted.
    [[nodiscard]] bool disculpada();
    [[nodiscard]] std::uint64_t disculpas() const { return disculpas_; }

    // Faults. `cuantas` requests from now on are concerned.
    void demorar(std::uint32_t cuantas, std::int64_t us) {
        demorarProximas_ = cuantas, extraUs_ = us;
    }
    void perder(std::uint32_t cuantas) { perderProximas_ = cuantas; }
    void partir(std::uint32_t cuantas, std::uint32_t enPedazos) {
        partirProximas_ = cuantas, pedazos_ = enPedazos;
    }
    void callar(std::uint8_t estacion, std::int64_t hastaUs) { calladas_[estacion] = hastaUs; }
    void duplicar(std::uint32_t cuantas, bool aparte) {
        duplicarProximas_ = cuantas, aparte_ = aparte;
    }
    void danar(std::uint32_t cuantas, std::uint32_t bit) { danarProximas_ = cuantas, bit_ = bit; }
    void trocar() { trocar_ = true; }
    void mandarSuelto(std::span<const std::uint8_t> bytes);
    /// From now on its stations fill the free bytes in another way; once in a life.
    void cambiarHabito(Habito a);
    /// The next answer in time has the free bytes of another register; once in a life.
    void mentirPronto() { miente_ = !mintio_; }
    /// Its registers start anew, as after a power cut.
    void reiniciar();
    void cortar();
    void cortarDeGolpe();
    /// From now on that becomes of who connects.
    void recibir(Llegada como);
    [[nodiscard]] Llegada llegada() const { return llegada_; }
    /// When its link was last closed, reset, and held back: ways in which a link may have ended.
    struct Fines {
        std::int64_t cerroUs = -1, reinicioUs = -1, retuvoUs = -1;
    };
    [[nodiscard]] const Fines& fines() const { return fines_; }
    /// Nothing passes until `reanudar`. False, and nothing happens, where no receiver could cope:
    /// it has had an answer since its last request, and another is still on its way.
    bool interrumpir();
    void reanudar(IdEnlace enlace);
    /// A link that was held back ends.
    void soltar(IdEnlace enlace);
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
    void cambiar(Registro& r, const Solicitud& s);
    void responder(const Solicitud& s, Registro& r);
    void emitir(const Respuesta& a, std::int64_t us, Registro& de);
    void emitirDoble(const Respuesta& a, const Respuesta& b, std::int64_t us, Registro& de);
    static void anotar(const Respuesta& a, std::int64_t llegaUs, Registro& de);
    void mentir(Respuesta& a, const Solicitud& s, std::int64_t us);
    void danar(Respuesta& a);
    void soltarGuardada(std::int64_t us);
    [[nodiscard]] Respuesta respuestaA(const Solicitud& s, std::uint16_t valor);
    [[nodiscard]] std::int64_t demoraDe();
    std::int64_t mandar(std::span<const std::uint8_t> bytes, std::int64_t us, bool deVeras);
    void mirarPasar(std::span<const std::uint8_t> bytes, bool deVeras);
    [[nodiscard]] std::int64_t tardeUs() const { return plan_.tiempoFueraMs * 2900; }

    RedSimulada& red_;
    const Reloj& reloj_;
    PlanDeConexion plan_;
    IdEnlace enlace_ = 0;
    Llegada llegada_ = Llegada::Entra;
    Fines fines_;
    std::unordered_map<IdEnlace, std::vector<std::uint8_t>> entradas_;
    std::unordered_map<std::uint32_t, Registro> registros_;
    std::vector<std::uint8_t> estaciones_;
    std::unordered_map<std::uint8_t, std::int64_t> calladas_;
    std::uint32_t demorarProximas_ = 0, perderProximas_ = 0, partirProximas_ = 0;
    std::uint32_t duplicarProximas_ = 0, danarProximas_ = 0;
    std::int64_t extraUs_ = 0;
    std::uint32_t pedazos_ = 1, bit_ = 0;
    bool trocar_ = false, aparte_ = false, sana_ = false;
    bool miente_ = false, mintio_ = false, cambio_ = false;
    std::uint32_t contador_ = 0; ///< of answers
    struct Guardada {
        Respuesta trama;
        Registro* de = nullptr; ///< null: no request waits
        std::int64_t us = 0;
    };
    Guardada guardada_;               ///< an answer that waits to be swapped with the next
    std::int64_t retenidaUs_ = -1;    ///< held back since then
    std::int64_t mentiraUs_ = 0;      ///< when the lie arrives
    std::deque<std::int64_t> llegan_; ///< when what was sent since the last request arrives
    std::array<std::uint8_t, kLargoRespuesta> pasan_{};
    std::int64_t ruidoUs_ = -1; ///< when a frame formed by noise arrives
    std::uint64_t respuestas_ = 0, disculpas_ = 0;
};

} // namespace kv::mundo
