// SPDX-License-Identifier: Apache-2.0
#include "driver_de_banco.h"

#include "text/numeros.h"

namespace kv::banco {

std::string configuracion(std::uint16_t puerto, int conexiones, int bloques, double scan) {
    std::string c = "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nCantEsclavos=" +
                    std::to_string(conexiones) +
                    "\nCantBloques=" + std::to_string(conexiones * bloques) + "\n";
    for (int i = 0; i < conexiones; ++i) {
        const std::string e = "Esclavo" + std::to_string(i);
        const unsigned ip = 0x7F010000U + static_cast<unsigned>(i) + 1;
        c += e + "_Numero=" + std::to_string(i + 1) + "\n" + e + "_Ip=127." +
             std::to_string(ip >> 16 & 255) + "." + std::to_string(ip >> 8 & 255) + "." +
             std::to_string(ip & 255) + "\n" + e + "_Puerto=" + std::to_string(puerto) + "\n" + e +
             "_Indice=1\n";
        for (int k = 0; k < bloques; ++k) {
            const std::string b = "Bloque" + std::to_string(i * bloques + k);
            std::string direccion;
            agregarHexadecimal(direccion, static_cast<std::uint8_t>(16 + k)); // up to 240 blocks
            c += b + "_PLC=" + std::to_string(i + 1) + "\n" + b + "_Quantity=1\n" + b +
                 "_StarAdrees=" + direccion + "\n" + b + "_ScanTime=" + std::to_string(scan) + "\n";
        }
    }
    return c;
}

} // namespace kv::banco
