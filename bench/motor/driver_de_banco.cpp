// SPDX-License-Identifier: Apache-2.0
#include "driver_de_banco.h"

#include "text/numeros.h"

#include <algorithm>

namespace kv::banco {

namespace {

constexpr int kPorPuerto = 25'000; // a station's number has sixteen bits

std::string direccionIp(int estacion) {
    const unsigned ip = 0x7F010000U + static_cast<unsigned>(estacion) + 1;
    return "127." + std::to_string(ip >> 16 & 255) + "." + std::to_string(ip >> 8 & 255) + "." +
           std::to_string(ip & 255);
}

} // namespace

std::string configuracion(std::uint16_t puerto, int conexiones, int bloques, double scan) {
    const int puertos = (conexiones + kPorPuerto - 1) / kPorPuerto;
    std::string c = "[CONFIG]\nCANT_PUERTOS=" + std::to_string(puertos) + "\n";
    for (int i = 0; i < conexiones; ++i) {
        const int enPuerto = i % kPorPuerto;
        if (enPuerto == 0) {
            const int cuantas = std::min(kPorPuerto, conexiones - i);
            const std::string numero = std::to_string(i / kPorPuerto + 1);
            // Answers are late once, while the links are spread.
            c += "[PUERTO" + numero + "]\nTIME_OUT=30\nNUMERO=" + numero +
                 "\nCantEsclavos=" + std::to_string(cuantas) +
                 "\nCantBloques=" + std::to_string(cuantas * bloques) + "\n";
        }
        const std::string e = "Esclavo" + std::to_string(enPuerto);
        const std::string plc = std::to_string(enPuerto + 1);
        c += e + "_Numero=" + plc + "\n" + e + "_Ip=" + direccionIp(i) + "\n" + e +
             "_Puerto=" + std::to_string(puerto) + "\n" + e + "_Indice=1\n";
        for (int k = 0; k < bloques; ++k) {
            const std::string b = "Bloque" + std::to_string(enPuerto * bloques + k);
            std::string direccion;
            agregarHexadecimal(direccion, static_cast<std::uint8_t>(16 + k)); // up to 240 blocks
            c += b + "_PLC=" + plc + "\n" + b + "_Quantity=1\n" + b + "_StarAdrees=" + direccion +
                 "\n" + b + "_ScanTime=" + std::to_string(scan) + "\n";
        }
    }
    return c;
}

} // namespace kv::banco
