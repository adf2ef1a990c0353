// SPDX-License-Identifier: Apache-2.0
// A driver configuration of any bytes is read, validated and reported.

#include "config/comprobacion.h"
#include "config/driver.h"
#include "config/informe_json.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string_view contenido(reinterpret_cast<const char*>(datos), largo);
    kv::ConfiguracionLeida c;
    kv::leerDriverDeTexto(contenido, "D.ini", c.listas, c.problemas);
    const kv::Revision r = kv::revisarListas(std::move(c), 800);
    if (r.validacion.bloques.size() != r.configuracion.listas.bloques.size()) __builtin_trap();
    static_cast<void>(kv::informeDe(r));
    static_cast<void>(kv::informeJsonDe(r));
    return 0;
}
