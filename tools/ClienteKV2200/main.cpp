#include "ClienteKV2200/conversacion.h"
#include "cli/salida_entera.h"

#include <array>
#include <csignal>
#include <exception>
#include <iostream>
#include <unistd.h>

namespace {

int correr(int argc, char** argv) {
    using namespace kv::cliente;
    Orden orden;
    try {
        if (const auto fin = leerOrden(argc, argv, orden, std::cout, std::cerr)) return *fin;
        kv::BucleEpoll bucle;
        bool interrumpido = false;
        bucle.alRecibirSenal(std::array{SIGINT, SIGTERM}, [&](int) {
            interrumpido = true;
            bucle.detener();
        });
        Conversacion conversacion(bucle, orden, std::cout, std::cerr, isatty(STDOUT_FILENO) == 1);
        const int codigo = conversacion.correr();
        return interrumpido && orden.accion != Accion::Vigilar ? kNoHecho : codigo;
    } catch (const std::exception& e) {
        std::cerr << lineaDeError(e.what(), orden.json) << '\n';
        return kNoHecho;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failure that is told
    return kv::conSalidaEntera(correr(argc, argv), "ClienteKV2200", std::cout, std::cerr);
}
