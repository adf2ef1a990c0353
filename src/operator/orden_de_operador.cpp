// SPDX-License-Identifier: Apache-2.0
#include "operator/orden_de_operador.h"

#include "text/numeros.h"

namespace kv {

std::string textoDeOrden(const Orden& orden) {
    return std::to_string(static_cast<int>(orden.clase)) + ";" + textoDeNumero(orden.numero) + ";" +
           textoDeNumero(orden.otro) + ";" + orden.texto;
}

std::optional<Orden> ordenDeTexto(std::string_view texto) {
    std::optional<double> numeros[3];
    for (auto& n : numeros) {
        const auto fin = texto.find(';');
        if (fin == std::string_view::npos) return std::nullopt;
        n = numeroDeTexto(texto.substr(0, fin));
        if (!n) return std::nullopt;
        texto.remove_prefix(fin + 1);
    }
    const auto clase = entero(*numeros[0]).value_or(-1);
    if (clase < 0 || clase > static_cast<int>(Orden::Clase::Olvidar)) return std::nullopt;
    return Orden{static_cast<Orden::Clase>(clase), std::string(texto), *numeros[1], *numeros[2]};
}

} // namespace kv
