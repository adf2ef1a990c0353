// SPDX-License-Identifier: Apache-2.0
#include "script/valor_visible.h"

#include "text/texto.h"

namespace kv {

std::string valorVisible(const vbscript::Engine& motor, const vbscript::Value& valor,
                         std::size_t largo) {
    using vbscript::Type;
    switch (valor.type) {
    case Type::Empty:
        return "Empty";
    case Type::Null:
        return "Null";
    case Type::String: {
        // Cut before it is turned: a script's text may have megabytes.
        const auto letras = valor.chars().substr(0, largo);
        const std::string texto = vbscript::Value::string(letras).utf8();
        const std::string_view visible = comienzo(texto, largo);
        const bool entero = visible.size() == texto.size() && letras.size() == valor.s->length;
        return "\"" + std::string(visible) + (entero ? "\"" : "…");
    }
    case Type::Array:
        return "matriz de " + std::to_string(valor.a->items.size()) + " elementos";
    case Type::Object:
        return valor.o != nullptr ? "objeto" : "Nothing";
    default:
        return motor.text(valor);
    }
}

} // namespace kv
