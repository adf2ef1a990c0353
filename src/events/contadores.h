// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "plant/tablas.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv {

/// What has been counted of a station, or of a connection with all of its stations, since the
/// start. Times are microseconds; 0 where no answer has been accepted yet.
struct Cuentas {
    std::uint64_t pedidos = 0;           ///< requests that left, retries among them
    std::uint64_t respuestas = 0;        ///< answers that were accepted
    std::int64_t ultimaRespuestaMs = -1; ///< when, on the clock that never goes back; -1: never
    std::int64_t ultimoUs = 0;           ///< the last response time
    std::int64_t peorUs = 0;             ///< since the start
    std::uint64_t vencidos = 0;          ///< requests whose time-out ended
    std::uint64_t reintentos = 0;
    std::uint64_t dudosas = 0;   ///< requests ended by an answer that may be another's
    std::uint64_t sobrantes = 0; ///< valid answers that were not accepted
    std::uint64_t descartes = 0; ///< times that bytes which make no answer were passed over
    std::uint64_t bytesDescartados = 0;
    std::int64_t medianoUs = 0; ///< of the latest ones
};

/// What the line did in the latest minutes, microseconds.
struct RepartoDeLinea {
    std::int64_t respuestas = 0; ///< from a request to its answer
    std::int64_t silencio = 0;   ///< waiting in vain, or for the line to be quiet
    std::int64_t pausas = 0;     ///< between two requests, as configured
    std::int64_t libre = 0;      ///< nothing was to be asked
    [[nodiscard]] std::int64_t total() const { return respuestas + silencio + pausas + libre; }
};

struct CuentasDeConexion : Cuentas {
    std::uint64_t caidas = 0; ///< links that were lost
    RepartoDeLinea reparto;
};

/// Counts what happens. One short look at each event, no clock of its own: what it takes is
/// nothing beside what made the event.
class Contadores final : public OyenteDeSucesos {
  public:
    /// Both must outlive this.
    Contadores(Sucesos& sucesos, const Tablas& tablas);
    ~Contadores() override { sucesos_.dejarDeAvisarA(this); }
    Contadores(const Contadores&) = delete;
    Contadores& operator=(const Contadores&) = delete;

    [[nodiscard]] CuentasDeConexion deConexion(Indice conexion) const;
    [[nodiscard]] Cuentas deEstacion(Indice conexion, Indice estacion) const;
    /// What an answer of the connection takes as a rule: a mean that forgets.
    [[nodiscard]] std::int64_t respuestaUsualUs(Indice conexion) const;

    void alSuceder(const Suceso& suceso, std::string_view texto) override;

  private:
    static constexpr std::size_t kMuestras = 32;
    // Every exchange counts: what it touches is whole lines of the processor's memory.
    struct alignas(64) DeEstacion {
        Cuentas cuentas;
        std::array<std::uint32_t, kMuestras> muestras{}; ///< response times of the latest answers
    };
    enum class Pedido : std::uint8_t { Ninguno, Fuera, Dudoso, Terminado };
    struct alignas(64) DeConexion {
        std::vector<DeEstacion> estaciones;
        Pedido pedido = Pedido::Ninguno;
        bool retenida = false;    ///< the line is being held back
        Indice estacion = 0;      ///< which was asked last
        float pausaUs = 0;        ///< the one that follows the request that has ended
        float usualUs = 0;        ///< see respuestaUsualUs
        std::int64_t finUs = 0;   ///< when the last request ended
        std::int64_t lapsoUs = 0; ///< when `reciente` began
        RepartoDeLinea reciente;
        RepartoDeLinea anterior;
        std::uint64_t caidas = 0;
    };
    void alSalir(const Suceso& s, DeConexion& c);
    void alContestar(const Suceso& s, DeConexion& c);
    void alVencer(const Suceso& s, DeConexion& c);
    void alPausar(const Suceso& s, DeConexion& c);
    static void alDescartar(const Suceso& s, DeConexion& c);
    static void sumarHueco(DeConexion& c, std::int64_t ahoraUs);
    static void poner(Cuentas& destino, std::vector<std::uint32_t> muestras);
    static std::vector<std::uint32_t> muestrasDe(const DeEstacion& e);

    Sucesos& sucesos_;
    const Tablas& tablas_;
    std::vector<DeConexion> conexiones_;
};

} // namespace kv
