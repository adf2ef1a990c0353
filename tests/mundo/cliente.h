// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ClienteKV2200/lector.h"
#include "mundo/contexto.h"
#include "mundo/regla_valores.h"

#include <string>
#include <vector>

namespace kv::mundo {

/// A supervisory client: logs in, keeps a table of what it is sent, and is sometimes rude.
class Cliente final : public ExtremoSimulado {
  public:
    Cliente(Contexto& c, ReglaDeValores& valores, std::string remoto)
        : c_(c), valores_(valores), remoto_(std::move(remoto)) {}

    /// Wants to be connected from now on, or not any more.
    void entrar();
    void salir();
    /// Knocks once, without a password.
    void tocar();
    void desaparecer();
    void noLeer(std::size_t bytes, std::int64_t hastaUs);
    void ignorarHasta(std::int64_t us) { ignoraHastaUs_ = us; }
    void enviar(std::string_view bytes);
    /// A read frame without an address, and behind it one that must be answered.
    void leerNada();
    /// Once in a while: comes back, tries its password again, reads again.
    void paso();
    /// Behaves from now on.
    void sanar();

    [[nodiscard]] bool logueado() const { return logueado_; }
    [[nodiscard]] bool sincronizado() const { return sincronizado_; }
    /// Whether its table says what the driver's says, for the addresses that name one variable
    /// only.
    void comparar();

  private:
    void alConectar(IdEnlace enlace) override;
    void alCortarse(IdEnlace enlace) override;
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override;
    void atender(const cliente::Mensaje& m);
    void identificarse();

    Contexto& c_;
    ReglaDeValores& valores_;
    std::string remoto_;
    cliente::Lector lector_{{}};
    IdEnlace enlace_ = 0;
    bool quiere_ = false, conectado_ = false, logueado_ = false, sincronizado_ = false;
    bool desaparecido_ = false;       ///< its link is half-open
    std::int64_t ecoDesdeUs_ = -1;    ///< it waits for an answer since then
    std::size_t bloquesAlEntrar_ = 0; ///< that the driver had when the link came up
    bool leeTodo_ = true;             ///< it never left anything unread on this link
    int avisosDeVida_ = 0;            ///< keep-alives of the driver on this link
    std::int64_t proximoIntentoUs_ = 0, ignoraHastaUs_ = 0, noLeeHastaUs_ = 0, ultimaColaUs_ = 0;
    struct Sabido {
        std::string valor, estado;
    };
    std::vector<Sabido> tabla_; ///< by block of the driver
};

/// Bytes that no client should send, of kind `cual`.
[[nodiscard]] std::string groseria(std::uint32_t cual, std::uint32_t semilla);

} // namespace kv::mundo
