// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/simulador.h"

#include "cli/castellano.h"
#include "cli/salida_entera.h"

#include <array>
#include <csignal>
#include <exception>
#include <iostream>

namespace {

int correr(int argc, char** argv) {
    using namespace kv::simulador;
    try {
        Orden orden;
        if (const auto fin = leerOrden(argc, argv, orden, std::cout, std::cerr)) return *fin;
        if (!orden.config.empty()) orden.escuchar = escuchadasDeConfig(orden.config, std::cerr);
        if (orden.escuchar.empty()) {
            std::cerr << "SimuladorKV2200: " << orden.config << " no tiene estaciones que servir\n";
            return kv::kMalaLinea;
        }
        permitirMuchosDescriptores();
        kv::BucleEpoll bucle;
        bucle.alRecibirSenal(std::array{SIGINT, SIGTERM}, [&bucle](int) { bucle.detener(); });
        Simulador simulador(bucle, orden, std::cout);
        if (!simulador.abrir(orden.escuchar, std::cerr)) return 1;
        if (std::cout) bucle.correr();
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "SimuladorKV2200: " << e.what() << '\n';
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failure that is reported
    return kv::conSalidaEntera(correr(argc, argv), "SimuladorKV2200", std::cout, std::cerr);
}
