// SPDX-License-Identifier: Apache-2.0
// A settings file of any bytes: every number lies in its range, missing defaults are written once,
// what the file says about clients lets nobody in by mistake, and a door that it has closed stays
// closed when it becomes one that is no whole file.

#include "config/ajustes.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"
#include "server/puerta.h"

#include <cstdint>

namespace {

void exigir(bool cierto) {
    if (!cierto) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string contenido(reinterpret_cast<const char*>(datos), largo);
    kv::BucleSimulado bucle;
    kv::ArchivosSimulados archivos;
    archivos.poner("/kv/sis_config.ini", contenido);
    kv::Ajustes ajustes(archivos, "/kv");
    for (const kv::AjusteNumerico& a : kv::ajustesNumericos()) {
        int avisos = 0;
        const kv::AvisoDeAjuste avisar = [&avisos](auto, const auto&, double) { ++avisos; };
        for (int veces = 0; veces < 2; ++veces) {
            const double n = ajustes.leerNumero(a, avisar);
            exigir(n >= a.minimo && n <= a.maximo);
            ajustes.vueltaNueva();
        }
        exigir(avisos <= 1);
    }
    const std::string escrito = archivos.contenido("/kv/sis_config.ini");
    kv::Puerta puerta(ajustes, bucle.reloj(), [](const std::string&) {});
    puerta.releer();
    exigir(!puerta.puedeEntrar("no es ip") || puerta.puedeEntrar("203.0.113.77"));
    exigir(ajustes.defecto().empty() || !puerta.puedeEntrar("203.0.113.77"));
    exigir(puerta.plazoDeLogin() >= 0);
    for (const kv::AjusteNumerico& a : kv::ajustesNumericos())
        static_cast<void>(ajustes.leerNumero(a, {}));
    exigir(archivos.contenido("/kv/sis_config.ini") == escrito);

    kv::ArchivosSimulados otros;
    otros.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\nEscucha_Clientes_Permitidos=10.0.0.1\r\n"
                                      "Escucha_Solo_Lectura=1\r\n");
    kv::Ajustes cerrados(otros, "/kv");
    kv::Puerta cerrada(cerrados, bucle.reloj(), [](const std::string&) {});
    cerrada.releer();
    otros.poner("/kv/sis_config.ini", contenido);
    cerrados.vueltaNueva();
    cerrada.releer();
    exigir(cerrados.defecto().empty() ||
           (cerrada.soloLectura() && !cerrada.puedeEntrar("203.0.113.77")));
    static_cast<void>(cerrados.leerConfiguracion("VER", "0"));
    exigir(cerrados.defecto().empty() || otros.contenido("/kv/sis_config.ini") == contenido);
    return 0;
}
