// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

// Whatever JSON the programs say is written by these, straight behind a text that is there. What
// comes out is JSON whatever goes in.

/// A text in UTF-8 as JSON has it, quotes and all. A byte that is no UTF-8, as in a file's name, is
/// taken for Windows-1252.
[[nodiscard]] std::string enJson(std::string_view texto);
/// A number; null for NaN and infinities.
[[nodiscard]] std::string enJson(double numero);

/// An object, member by member. `fin` ends it.
class ObjetoJson {
  public:
    explicit ObjetoJson(std::string& destino) : a_(destino) { a_ += '{'; }
    /// Where the value of a member is to be written, nothing but it. `nombre` is the program's own:
    /// nothing in it has to be escaped.
    std::string& valor(std::string_view nombre);
    ObjetoJson& crudo(std::string_view nombre, std::string_view json) {
        valor(nombre) += json;
        return *this;
    }
    ObjetoJson& texto(std::string_view nombre, std::string_view t) {
        return crudo(nombre, enJson(t));
    }
    ObjetoJson& numero(std::string_view nombre, double n) { return crudo(nombre, enJson(n)); }
    ObjetoJson& logico(std::string_view nombre, bool si) {
        return crudo(nombre, si ? "true" : "false");
    }
    void fin() { a_ += '}'; }

  private:
    std::string& a_;
};

/// A list, element by element. `fin` ends it.
class ListaJson {
  public:
    explicit ListaJson(std::string& destino) : a_(destino) { a_ += '['; }
    /// Where the next element is to be written, nothing but it.
    std::string& elemento();
    ListaJson& texto(std::string_view t) {
        elemento() += enJson(t);
        return *this;
    }
    void fin() { a_ += ']'; }

  private:
    std::string& a_;
};

} // namespace kv
