// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/limites.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// Characters that a box takes of an address.
inline constexpr int kDireccionMaxima = static_cast<int>(limite::kDireccionEnMensaje);

/// Key filter of boxes that take whole numbers: a digit or backspace (8) passes, any other key
/// becomes code 16, but for "." and "-" where they are allowed.
[[nodiscard]] std::int16_t ValidarIngresoDeNumeros(std::int16_t tecla, bool menos, bool punto);

/// Takes writes that were asked for by hand; how each ends is shown in the operator's box.
class OrdenDeEscribir {
  public:
    virtual ~OrdenDeEscribir() = default;
    virtual void escribirDireccion(const std::string& direccion, double valor) = 0;
    /// What is known of an address now: its value, state and time. Empty when nobody reads it.
    [[nodiscard]] virtual std::string loQueSeLee(std::string_view direccion) const = 0;
};

/// The manual write dialog without its window: four texts, the bits and what its buttons do. The
/// value is that of a register with its sixteen bits, or, when the address names one, of that bit
/// alone. Bits count from 0, the lowest.
class EscrituraManual {
  public:
    std::string txtPuerto; ///< this and the next two: parts of the address, as typed
    std::string TxtPlc;
    std::string TxtDireccion; ///< a register, or a register and its bit

    /// The bit that the address names, -1 if it names a whole register.
    [[nodiscard]] int bit() const;
    [[nodiscard]] std::string direccion() const;
    /// The value's text, brought in line with what a word can be: "0" when empty or no number.
    void ponerValor(std::string_view texto);
    void recibirValorMW(double valor);
    [[nodiscard]] const std::string& TxtValor() const { return valor_; }
    [[nodiscard]] bool CheckBin(int bit) const;
    [[nodiscard]] std::string LblBinario() const;
    /// A check box was clicked: the value follows.
    void marcar(int bit, bool marcado);
    /// Whether a box takes the character, typed or pasted: digits, and nothing else.
    [[nodiscard]] static bool admite(char16_t caracter);
    /// Whether the value fits what it is written to: a word, or a bit.
    [[nodiscard]] bool cabe() const;
    enum class Campo : std::uint8_t { Puerto, Plc, Direccion, Valor };
    /// OK: the first bad field, or nothing when the write was asked for.
    [[nodiscard]] std::optional<Campo> BtnOk(OrdenDeEscribir& orden) const;

  private:
    std::string valor_ = "0";
};

} // namespace kv
