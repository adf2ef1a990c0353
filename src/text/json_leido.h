// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A JSON value that was read.
class Json {
  public:
    enum class Clase : std::uint8_t { Nulo, Logico, Numero, Texto, Lista, Objeto };

    [[nodiscard]] Clase clase() const { return clase_; }
    [[nodiscard]] std::optional<bool> logico() const;
    [[nodiscard]] std::optional<double> numero() const;
    /// Null where it is no text, UTF-8 where it is.
    [[nodiscard]] const std::string* texto() const;
    /// The elements of a list, or the values of an object; empty for any other value.
    [[nodiscard]] const std::vector<Json>& elementos() const { return elementos_; }
    /// The value of an object's member; null if it has no such member.
    [[nodiscard]] const Json* miembro(std::string_view nombre) const;
    /// The names of an object's members, in the order of `elementos`.
    [[nodiscard]] const std::vector<std::string>& nombres() const { return nombres_; }
    /// A text's or number's own JSON.
    [[nodiscard]] std::string comoJson() const;

  private:
    friend class LectorDeJson;
    Clase clase_ = Clase::Nulo;
    bool logico_ = false;
    double numero_ = 0;
    std::string texto_; ///< a number's as it was written
    std::vector<Json> elementos_;
    std::vector<std::string> nombres_;
};

/// Values in one another, at most; what is deeper is refused.
inline constexpr int kHonduraDeJson = 16;

/// Reads a text that is one JSON value, to the letter of the grammar: no name twice in an object,
/// no number too large for a double, whole UTF-8. Linear. Else nothing, and `falla` says in Spanish
/// where and what.
[[nodiscard]] std::optional<Json> leerJson(std::string_view texto, std::string& falla);

} // namespace kv
