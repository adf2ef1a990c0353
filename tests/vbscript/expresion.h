// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace vbscript {

/// A random expression of the language: its text, and what it is worth by a reckoning of its own
/// that shares nothing with the engine.
class Expresion {
  public:
    using Valor = std::variant<std::int64_t, std::string, bool>;
    enum class Clase : std::uint8_t { Numero, Texto, Verdad };

    /// Whole numbers, texts and truths, each where it belongs. Deterministic in `azar`.
    static Expresion conSentido(std::mt19937& azar);
    /// Any operator on any operands, Null, Empty, dates and texts that are no number among them;
    /// valor() is not to be asked.
    static Expresion sinSentido(std::mt19937& azar);

    [[nodiscard]] std::string texto() const;
    /// Whether it binds tighter than a comparison, so that `texto() = x` compares all of it.
    [[nodiscard]] bool atada() const { return nivel_ > 7; }
    /// Nothing where a number on the way is beyond 32 bits or divided by zero.
    [[nodiscard]] std::optional<Valor> valor() const;

    /// What a script has to have run for the names in it to have a meaning.
    static const char* preparacion();

  private:
    friend class Generador;
    struct Contexto { ///< While it is reckoned.
        std::int64_t sello = 0;
        bool imposible = false;
    };
    [[nodiscard]] Valor calcular(Contexto& c) const;
    [[nodiscard]] Valor calcularFuncion(Contexto& c) const;
    [[nodiscard]] Valor calcularOperador(Contexto& c) const;
    [[nodiscard]] std::string operando(std::size_t k) const;

    std::string nombre_; ///< Operator, function, or the text of a leaf.
    int nivel_ = 100;    ///< How tight it binds; 100: a leaf or a call.
    bool suelto_ = true; ///< No parentheses but where they are needed.
    Valor hoja_;
    std::vector<Expresion> partes_;
};

/// As the language writes it in Argentina.
[[nodiscard]] std::string enTexto(const Expresion::Valor& v);

} // namespace vbscript
