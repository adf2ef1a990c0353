// SPDX-License-Identifier: Apache-2.0
#include "text/direccion_de_red.h"

#include "text/numeros.h"
#include "text/texto.h"

namespace kv {

std::optional<std::uint16_t> puertoTcpDeTexto(std::string_view texto) {
    const auto numero = numeroDeTexto(texto);
    if (!numero || !(*numero >= 1 && *numero <= 65535)) return std::nullopt;
    const auto puerto = static_cast<std::uint16_t>(*numero);
    if (puerto != *numero) return std::nullopt;
    return puerto;
}

bool esIPv4(std::string_view texto) {
    int grupos = 0;
    for (const std::string_view parte : partir(texto.substr(0, 16), '.')) {
        const bool cifras = !parte.empty() && parte.size() <= 3 &&
                            parte.find_first_not_of("0123456789") == std::string_view::npos;
        if (!cifras || (parte.size() > 1 && parte.front() == '0')) return false;
        if (numeroDeTexto(parte).value_or(256) > 255) return false;
        ++grupos;
    }
    return grupos == 4 && texto.size() <= 15;
}

} // namespace kv
