// SPDX-License-Identifier: Apache-2.0
// A project export of any bytes. Every field found by the line reader is the one that `campo`
// finds: the two readings of a record must never part.

#include "config/comprobacion.h"
#include "config/desconocidas.h"
#include "config/exportacion.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string_view contenido(reinterpret_cast<const char*>(datos), largo);
    kv::ConfiguracionLeida c;
    int mensajes = 0;
    kv::leerProyectoDeTexto(contenido, "P", c.listas, c.problemas,
                            [&mensajes](std::string_view) { ++mensajes; });
    if (mensajes > 1) __builtin_trap();
    std::size_t linea = 1;
    std::size_t estacion = 0;
    for (std::size_t i = 0; i < contenido.size() && estacion < c.listas.estaciones.size();
         ++linea) {
        const auto salto = std::min(contenido.find('\n', i), contenido.size());
        std::string_view texto = contenido.substr(i, salto - i);
        if (salto < contenido.size() && texto.ends_with('\r')) texto.remove_suffix(1);
        i = salto + 1;
        if (c.listas.lineasDeEstaciones[estacion] != linea) continue;
        const auto ip = kv::campo(texto, "IP");
        if (!ip || (ip->size() < 100 && ip->size() > c.listas.estaciones[estacion].ip.size()))
            __builtin_trap();
        ++estacion;
    }
    kv::revisarNombresDeExportacion(contenido, "P", c.problemas);
    static_cast<void>(kv::informeDe(kv::revisarListas(std::move(c), 800)));
    return 0;
}
