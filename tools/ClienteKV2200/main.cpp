#include "ClienteKV2200/conversacion.h"

#include <array>
#include <csignal>
#include <exception>
#include <iostream>
#include <unistd.h>

int main(int argc, char** argv) {
    using namespace kv::cliente;
    try {
        Orden orden;
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
        std::cerr << "ClienteKV2200: " << e.what() << '\n';
        return kNoHecho;
    }
}
