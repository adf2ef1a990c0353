// SPDX-License-Identifier: Apache-2.0
// A project export of any bytes: one message at most, whatever is wrong with it.

#include "config/comprobacion.h"
#include "config/exportacion.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string_view contenido(reinterpret_cast<const char*>(datos), largo);
    kv::ConfiguracionLeida c;
    int mensajes = 0;
    kv::leerProyectoDeTexto(contenido, "P", c.listas, c.problemas,
                            [&mensajes](std::string_view) { ++mensajes; });
    if (mensajes > 1) __builtin_trap();
    static_cast<void>(kv::informeDe(kv::revisarListas(std::move(c), 800)));
    return 0;
}
