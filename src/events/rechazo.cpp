// SPDX-License-Identifier: Apache-2.0
#include "events/rechazo.h"

namespace kv {

std::string TextoDeRechazo::unir() const {
    std::string texto(direccion);
    for (const std::string_view otra : {motivo, origen, clave}) {
        texto += '\0';
        texto += otra;
    }
    return texto;
}

TextoDeRechazo TextoDeRechazo::partir(std::string_view texto) {
    // The address may hold anything; what follows it is ours.
    const auto ultima = [&texto] {
        const auto corte = texto.rfind('\0');
        const auto parte = corte == std::string_view::npos ? texto : texto.substr(corte + 1);
        texto = texto.substr(0, corte == std::string_view::npos ? 0 : corte);
        return parte;
    };
    TextoDeRechazo t;
    t.clave = ultima();
    t.origen = ultima();
    t.motivo = ultima();
    t.direccion = texto;
    return t;
}

} // namespace kv
