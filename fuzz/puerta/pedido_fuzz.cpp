// SPDX-License-Identifier: Apache-2.0
// Any bytes at the local door of a driver, from a user who may write: what comes back is a JSON
// object a line, the plant goes on being polled, and the next program is served as if nothing had
// been. The first byte says in what pieces the bytes arrive.

#include "puerta/apoyo.h"

#include <cstdint>
#include <string>

namespace kv {
namespace {

void exigir(bool cierto) {
    if (!cierto) __builtin_trap();
}

std::string planta() {
    return Configuracion()
        .puerto({"1", "0", "5"})
        .estacion(1, "10.0.0.1", 1)
        .bloque(1, "10", "1")
        .bloque(1, "11", "1", false)
        .texto();
}

} // namespace
} // namespace kv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    using namespace kv;
    if (largo == 0) return 0;
    Planta p(planta());
    p.archivos.poner("/etc/passwd", "ana:x:1000:1000::/:/bin/sh\n");
    p.ajuste("Puerta_Local_Escriben", "ana");
    p.en("10.0.0.1");
    p.arrancar();
    p.arranque.abrirServidor();
    p.avanzar(6000);
    Vecino v(p);
    v.conectar();
    exigir(v.conectado);
    const std::string_view texto(reinterpret_cast<const char*>(datos) + 1, largo - 1);
    const std::size_t trozo = std::size_t{datos[0]} + 1;
    for (std::size_t i = 0; i < texto.size() && v.conectado; i += trozo * 16) {
        v.enviar(texto.substr(i, trozo * 16));
        p.avanzar(1);
    }
    v.enviar("\n");
    p.avanzar(3000);
    (void)v.tomar();
    Vecino otro(p, "2000/3");
    otro.conectar();
    exigir(otro.pedir("{\"pedido\":\"estado\"}", 500).size() == 2);
    const auto antes = p.motor.recepcion.respuestas();
    p.motor.operador.activarBloque(0, true);
    p.avanzar(8000);
    exigir(p.motor.recepcion.respuestas() > antes);
    return 0;
}
