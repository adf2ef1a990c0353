// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/json.h"
#include "text/numeros.h"

#include <cmath>
#include <string>
#include <string_view>

namespace kv {

/// An object that is written behind a text, member by member. `fin` ends it.
class ObjetoJson {
  public:
    explicit ObjetoJson(std::string& destino) : a_(destino) { a_ += '{'; }
    ObjetoJson& crudo(std::string_view nombre, std::string_view json) {
        if (a_.back() != '{') a_ += ',';
        a_ += '"';
        a_ += nombre; // ours: nothing in it has to be escaped
        a_ += "\":";
        a_ += json;
        return *this;
    }
    ObjetoJson& texto(std::string_view nombre, std::string_view t) {
        return crudo(nombre, enJson(t));
    }
    ObjetoJson& numero(std::string_view nombre, double n) {
        return crudo(nombre, std::isfinite(n) ? textoDeNumero(n) : "null");
    }
    ObjetoJson& logico(std::string_view nombre, bool si) {
        return crudo(nombre, si ? "true" : "false");
    }
    void fin() { a_ += '}'; }

  private:
    std::string& a_;
};

} // namespace kv
