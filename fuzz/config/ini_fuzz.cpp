// SPDX-License-Identifier: Apache-2.0
// An INI file of any bytes: a key that was written is read back, and nothing else changes.

#include "config/ini.h"

#include <cstdint>
#include <cstdlib>

namespace {

void exigir(bool cierto) {
    if (!cierto) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string contenido(reinterpret_cast<const char*>(datos), largo);
    const kv::Ini antes{std::string(contenido)};
    kv::LectorIni lector(contenido);
    while (lector.siguiente()) {
        const kv::LineaIni& l = lector.linea();
        exigir(l.inicio <= l.finDeTexto && l.finDeTexto <= l.fin && l.fin <= contenido.size());
        if (l.clase == kv::LineaIni::Clase::Clave) exigir(l.inicioDeValor <= l.finDeTexto);
    }
    const auto otra = antes.buscar("Otra", "clave");
    const std::string escrito = kv::iniConClave(contenido, "DRIVER", "VER", "un valor");
    const kv::Ini despues{std::string(escrito)};
    const auto leido = despues.buscar("driver", "ver");
    exigir(leido && leido->valor == "un valor");
    const auto misma = despues.buscar("Otra", "clave");
    exigir(otra.has_value() == misma.has_value() && (!otra || otra->valor == misma->valor));
    // Writing the same again changes nothing.
    exigir(kv::iniConClave(escrito, "DRIVER", "VER", "un valor") == escrito);
    return 0;
}
