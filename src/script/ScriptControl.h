#pragma once

#include "core/tables/bloque.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kv {

/// The script host as the engine knows it. It keeps the published global variables and understands
/// code that consists of assignments of numbers, one a line; the rest of the language is not here
/// yet, and other statements are errors.
class ScriptControl {
  public:
    /// The number of a global variable, made on first use. Nothing when `nombre` is no identifier:
    /// text from a configuration never reaches the host as code.
    [[nodiscard]] std::optional<Indice> ranura(std::string_view nombre);
    /// What the statement name=value does, without a statement to parse.
    void publicar(Indice ranura, double valor) { valores_[ranura] = valor; }
    [[nodiscard]] double valor(Indice ranura) const { return valores_[ranura]; }
    [[nodiscard]] std::optional<double> valorDe(std::string_view nombre) const;

    /// Adds code to the global module and runs its statements at once; ends at the first error.
    void AddCode(std::string_view texto);
    /// Number of the last error, 0 if none since `Clear`.
    [[nodiscard]] int Number() const { return numero_; }
    void Clear() { numero_ = 0; }

  private:
    std::unordered_map<std::string, Indice> nombres_; ///< in lower case
    std::vector<double> valores_;
    int numero_ = 0;
};

} // namespace kv
