// SPDX-License-Identifier: Apache-2.0
// An address and a value typed by hand, a line each: whatever they are, a station is only ever
// written in a register that is configured, and not at all when the order was refused.

#include "apoyo/planta.h"
#include "text/numeros.h"

#include <cstdint>

namespace {

constexpr std::uint8_t kEscritura = 0x57;

void exigir(bool cierto) {
    if (!cierto) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string texto(reinterpret_cast<const char*>(datos), largo);
    const auto salto = std::min(texto.find('\n'), texto.size());
    const std::string direccion = texto.substr(0, salto);
    const std::string valor = texto.substr(std::min(salto + 1, texto.size()));
    kv::Configuracion c;
    c.puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "60").bloque(1, "1F", "60");
    kv::Planta planta(c);
    planta.ajuste("Guion_Llamadas_Anidadas_Maximo", "10"); // less to set aside
    kv::Estaciones& estaciones = planta.en("10.0.0.1");
    planta.arrancarYConectar();
    planta.avanzar(5000);
    const double n = planta.motor.solicitudes.escribirDireccion(
        direccion, kv::numeroDeTexto(valor).value_or(0), "mano");
    planta.motor.forzado.forzarPoleo(direccion, "prueba");
    planta.avanzar(5000);
    for (const auto& p : estaciones.pedidos) {
        if (p.trama[0] != kEscritura) continue;
        exigir(n >= 0 && p.trama[1] == 1 && (p.trama[3] == 0x10 || p.trama[3] == 0x1F));
    }
    exigir(planta.conexion(0).turno == kv::EstadoDeTurno::Libre);
    return 0;
}
