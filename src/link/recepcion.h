#pragma once

#include "link/turno.h"
#include "log/archivo_log.h"
#include "script/guion.h"

#include <cstdint>
#include <span>

namespace kv {

/// Those who understand an answer that matches the outstanding request.
class InterpretesDeRespuestas {
  public:
    virtual ~InterpretesDeRespuestas() = default;
    /// `trama` is a valid answer that belongs to the connection's outstanding read.
    virtual void interpretarTramaRecepcionada_OK(Indice conexion) = 0;
    /// The same for a write or the read-back of one.
    virtual void interpretarTramaRecepcionada_PorEscritura(Indice conexion) = 0;
    /// A valid answer came that cannot be told from the late answer of another register.
    virtual void respuestaDudosa(Indice conexion) = 0;
};

/// Bytes from the stations become frames. A frame of eight bytes is checked and handed to the
/// interpretation that matches the outstanding request; what is no answer is traced and thrown
/// away, and the next marker byte begins the next frame. After each arrival that completed a frame
/// the user script runs.
class Recepcion final : public OyenteDeZocalo {
  public:
    Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Vista& vista, Sello& sello,
              ArchivoLog& log, Guion& guion);
    void interpretarCon(InterpretesDeRespuestas* interpretes) { interpretes_ = interpretes; }

    void alConectar(std::size_t indice) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;

    /// Damaged frames, and valid ones that nobody had asked for, since the start.
    [[nodiscard]] std::uint64_t descartadas() const { return descartadas_; }
    [[nodiscard]] std::uint64_t sobrantes() const { return sobrantes_; }
    [[nodiscard]] std::uint64_t respuestas() const { return respuestas_; }

  private:
    [[nodiscard]] bool recibir(Indice n, std::span<const std::uint8_t> bytes);
    [[nodiscard]] std::span<const std::uint8_t> juntar(ConexionIP& c,
                                                       std::span<const std::uint8_t> bytes);
    void entregar(Indice n, std::span<const std::uint8_t> resto);
    void descartar(Indice n);
    void sobrar(Indice n);

    Tablas& tablas_;
    Turnos& turnos_;
    Bucle& bucle_;
    Vista& vista_;
    Sello& sello_;
    ArchivoLog& log_;
    Guion& guion_;
    InterpretesDeRespuestas* interpretes_ = nullptr;
    std::uint64_t descartadas_ = 0;
    std::uint64_t sobrantes_ = 0;
    std::uint64_t respuestas_ = 0;
};

} // namespace kv
