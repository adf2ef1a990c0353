#include "core/start/programa.h"

#include <array>
#include <csignal>

namespace kv {

Programa::Programa(const Opciones& opciones, std::function<void()> terminar)
    : salida(opciones.traza), motor(bucle, archivos, opciones.carpeta), arranque(motor, procesos) {
    motor.vista.observar(&salida);
    constexpr std::array<int, 2> kSenales{SIGINT, SIGTERM};
    bucle.alRecibirSenal(kSenales, [terminar = std::move(terminar)](int) { terminar(); });
    bucle.alFinalDeVuelta([this] { salida.volcar(); });
    motor.scriptControl.fijarCarpetaDeArchivos([this] { return carpetaDelGuion(); });
}

void Programa::arrancar() {
    arranque.arrancar();
    arranque.abrirServidor();
    salida.volcar(); // the first turn of the loop may end seconds from now
}

/// The folder in which scripts may use files, below the program's; a setting names it.
std::string Programa::carpetaDelGuion() {
    const std::string nombre = motor.ajustes.leerConfiguracion("Carpeta_De_Guion", "GUION");
    if (nombre.find_first_of("/\\") != std::string::npos || nombre.find("..") != std::string::npos)
        return {};
    std::string carpeta = motor.ajustes.carpeta() + "/" + nombre;
    archivos.crearCarpeta(carpeta);
    return carpeta;
}

} // namespace kv
