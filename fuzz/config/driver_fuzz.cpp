// A driver configuration of any bytes is read, validated and reported.

#include "config/comprobacion.h"
#include "config/driver.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string_view contenido(reinterpret_cast<const char*>(datos), largo);
    kv::ConfiguracionLeida c;
    kv::leerDriverDeTexto(contenido, "D.ini", c.listas, c.problemas);
    const kv::Validacion v = kv::validar(c.listas, c.problemas);
    if (v.bloques.size() != c.listas.bloques.size()) __builtin_trap();
    static_cast<void>(kv::informeDe(c, v));
    return 0;
}
