#pragma once

#include "link/turno.h"
#include "log/archivo_log.h"
#include "wire/ensamblado.h"

#include <cstdint>
#include <span>

namespace kv {

/// Those who understand an answer that matches the outstanding request.
class InterpretesDeRespuestas {
  public:
    virtual ~InterpretesDeRespuestas() = default;
    /// `recepcion` holds a valid answer that belongs to the connection's outstanding read.
    virtual void interpretarTramaRecepcionada_OK(Indice conexion) = 0;
    /// The same for a write, its read-back or its first read.
    virtual void interpretarTramaRecepcionada_PorEscritura(Indice conexion) = 0;
    /// A valid answer came that cannot be told from the late answer of another register: the try
    /// has failed.
    virtual void respuestaDudosa(Indice conexion) = 0;
    /// An arrival completed a frame, good or bad, and all that follows from it is done.
    virtual void alCompletarseUnaLlegada() = 0;
};

/// Bytes from the stations become frames. The one that answers the outstanding request is handed to
/// the interpretation that matches it; late ones and what is no answer are traced and thrown away.
class Recepcion final : public OyenteDeZocalo {
  public:
    Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Vista& vista, Sello& sello,
              ArchivoLog& log);
    void interpretarCon(InterpretesDeRespuestas* interpretes) { interpretes_ = interpretes; }

    void alConectar(std::size_t indice) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;

    /// Arrivals with bytes that make no answer, and answers that were not accepted, since the
    /// start.
    [[nodiscard]] std::uint64_t descartadas() const { return descartadas_; }
    [[nodiscard]] std::uint64_t sobrantes() const { return sobrantes_; }
    [[nodiscard]] std::uint64_t respuestas() const { return respuestas_; }

  private:
    [[nodiscard]] bool recibir(Indice n, std::span<const std::uint8_t> bytes);
    void entregar(Indice n);
    void aceptar(Indice n, const Respuesta& trama);
    void descartar(Indice n);
    void sobrar(const Respuesta& trama);

    Tablas& tablas_;
    Turnos& turnos_;
    Bucle& bucle_;
    Vista& vista_;
    Sello& sello_;
    ArchivoLog& log_;
    InterpretesDeRespuestas* interpretes_ = nullptr;
    Ensamblado llego_; ///< what the present arrival made
    std::vector<RespuestasDebidas::Respuesta> vistas_;
    std::uint64_t descartadas_ = 0;
    std::uint64_t sobrantes_ = 0;
    std::uint64_t respuestas_ = 0;
};

} // namespace kv
