// SPDX-License-Identifier: Apache-2.0
// A table of any bytes. What can be read of one is the same after it was written to a configuration
// and read again.

#include "config/driver.h"
#include "config/planilla.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string_view contenido(reinterpret_cast<const char*>(datos), largo);
    kv::ListasDeConfiguracion listas;
    kv::Problemas problemas;
    kv::leerPlanilla(contenido, "P.csv", listas, problemas);
    if (!problemas.ninguno()) return 0;
    for (const kv::Puerto& p : listas.puertos) {
        if (kv::puertoDeRegistros(p.numero) == 0)
            return 0; // the check reports it; its blocks belong to no port
    }
    // Rows may stand in any order; in the file each port has its own together.
    kv::ListasDeConfiguracion vueltas;
    kv::leerDriverDeTexto(kv::iniDe(listas), "D.ini", vueltas, problemas);
    if (!problemas.ninguno()) __builtin_trap();
    const std::string ordenada = kv::iniDe(vueltas);
    if (ordenada != kv::iniDe(listas)) __builtin_trap();
    return 0;
}
