// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/trazas.h"
#include "view/observador.h"

#include <string>

namespace kv {

/// Prints what the operator would see: messages on standard error as "title: text", and with the
/// trace on every line of every box and every label on standard output. Lines are gathered and
/// written once per turn of the loop. A reader that does not keep up never stops the driver: up to
/// 64 MiB wait for it, then lines are lost and the number of those lost is printed.
class SalidaDeTraza final : public Observador, public LectorDeTrazas {
  public:
    explicit SalidaDeTraza(bool traza) : traza_(traza) {}
    ~SalidaDeTraza() override;
    SalidaDeTraza(const SalidaDeTraza&) = delete;
    SalidaDeTraza& operator=(const SalidaDeTraza&) = delete;

    void alAgregar(std::string_view caja, std::int64_t indice, std::string_view texto) override;
    void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) override;
    void alCambiarColor(std::string_view etiqueta, Color color) override;
    void alVestirEtiqueta(std::string_view etiqueta, const AspectoDeEtiqueta& aspecto) override;
    void alMostrarMensaje(std::string_view titulo, std::string_view texto) override;

    /// Writes what standard output takes without waiting.
    void volcar();
    /// Writes everything, waiting for a reader that still reads.
    void volcarTodo();
    /// Whether a part could not be written, or was left out for a reader that did not keep up.
    [[nodiscard]] bool fallo() const { return fallo_; }

  private:
    void linea(std::string_view nombre, std::int64_t indice, std::string_view texto);
    [[nodiscard]] bool escribir(int esperaMs);

    bool traza_;
    std::string pendiente_; ///< [escritos_, size) still to be written
    std::size_t escritos_ = 0;
    std::size_t perdidas_ = 0;
    bool fallo_ = false;
};

} // namespace kv
