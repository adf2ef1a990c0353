// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/turno.h"
#include "log/archivo_log.h"
#include "wire/ensamblado.h"

#include <cstdint>
#include <functional>
#include <span>

namespace kv {

/// Bytes from the stations become frames. The one that answers the outstanding request is handed to
/// whoever asked; late ones and what is no answer are said in an event and thrown away.
class Recepcion final : public OyenteDeZocalo {
  public:
    /// `alCompletarse` is called when an arrival completed a frame, good or bad, and all that
    /// follows from it is done.
    Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Sucesos& sucesos, ArchivoLog& log,
              std::function<void()> alCompletarse);

    void alConectar(std::size_t indice) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;

    /// Answers that were accepted, of all connections, since the start.
    [[nodiscard]] std::uint64_t respuestas() const { return respuestas_; }

  private:
    [[nodiscard]] bool recibir(Indice n, std::span<const std::uint8_t> bytes);
    void entregar(Indice n);
    /// Says what came, behind the bytes that were held already.
    void decirLlegada(Que que, Indice n, std::span<const std::uint8_t> bytes, double cuantos);

    Tablas& tablas_;
    Turnos& turnos_;
    Bucle& bucle_;
    Sucesos& sucesos_;
    ArchivoLog& log_;
    std::function<void()> alCompletarse_;
    std::vector<std::uint8_t> tenidos_; ///< what was held when the present arrival came
    Ensamblado llego_;                  ///< what it made
    std::string texto_;
    std::vector<RespuestasDebidas::Respuesta> vistas_;
    std::uint64_t respuestas_ = 0;
};

} // namespace kv
