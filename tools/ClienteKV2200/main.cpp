// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/conversacion.h"
#include "ClienteKV2200/local.h"
#include "cli/salida_entera.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>
#include <unistd.h>

namespace {

/// Whether a table can be drawn in place.
bool hayPantalla() {
    const char* const clase = std::getenv("TERM"); // NOLINT: there is one thread
    return isatty(STDOUT_FILENO) == 1 && clase != nullptr && std::string_view(clase) != "dumb" &&
           *clase != '\0';
}

int correr(int argc, char** argv) {
    using namespace kv::cliente;
    Orden orden;
    try {
        if (const auto fin = leerOrden(argc, argv, orden, std::cout, std::cerr)) return *fin;
        if (!orden.local.empty()) return hacerLocal(orden, std::cout, std::cerr);
        kv::BucleEpoll bucle;
        bool interrumpido = false;
        bucle.alRecibirSenal(std::array{SIGINT, SIGTERM}, [&](int) {
            interrumpido = true;
            bucle.detener();
        });
        Conversacion conversacion(bucle, orden, std::cout, std::cerr, hayPantalla());
        const int codigo = conversacion.correr();
        return interrumpido && orden.accion != Accion::Vigilar ? kNoHecho : codigo;
    } catch (const std::exception& e) {
        std::cerr << lineaDeError(e.what(), orden.json) << '\n';
        return kNoHecho;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failure that is reported
    return kv::conSalidaEntera(correr(argc, argv), "ClienteKV2200", std::cout, std::cerr);
}
