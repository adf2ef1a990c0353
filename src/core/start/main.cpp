#include "config/comprobacion.h"
#include "core/start/arranque.h"
#include "core/start/motor.h"
#include "core/start/salida_de_traza.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/servicio.h"
#include "platform/epoll/sistema.h"

#include <CLI/CLI.hpp>

#include <array>
#include <csignal>
#include <exception>
#include <iostream>

namespace {

constexpr int kOrdenado = 0;
constexpr int kYaCorre = 1;
constexpr int kMalaLinea = 2;

struct Opciones {
    std::string carpeta = kv::carpetaDelPrograma();
    bool sinVentana = false;
    bool traza = false;
    bool comprobar = false;
};

int comprobar(const Opciones& opciones) {
    kv::ArchivosReales archivos;
    kv::Ajustes ajustes(archivos, opciones.carpeta);
    const kv::Comprobacion comprobacion = kv::comprobar(ajustes);
    std::cout << comprobacion.informe;
    return comprobacion.resultado;
}

/// The folder in which scripts may use files, below the program's; a setting names it.
std::string carpetaDelGuion(kv::Motor& motor, kv::Archivos& archivos) {
    const std::string nombre = motor.ajustes.leerConfiguracion("Carpeta_De_Guion", "GUION");
    if (nombre.find_first_of("/\\") != std::string::npos || nombre.find("..") != std::string::npos)
        return {};
    std::string carpeta = motor.ajustes.carpeta() + "/" + nombre;
    archivos.crearCarpeta(carpeta);
    return carpeta;
}

int correr(const Opciones& opciones) {
    kv::BucleEpoll bucle;
    kv::AvisosDeServicio servicio(bucle);
    kv::ArchivosReales archivos;
    kv::ProcesosReales procesos;
    kv::SalidaDeTraza salida(opciones.traza);
    kv::Motor motor(bucle, archivos, opciones.carpeta);
    motor.vista.observar(&salida);
    kv::Arranque arranque(motor, procesos);
    if (!arranque.soyElUnico()) return kYaCorre;
    constexpr std::array<int, 2> kSenales{SIGINT, SIGTERM};
    bucle.alRecibirSenal(kSenales, [&bucle](int) { bucle.detener(); });
    bucle.alFinalDeVuelta([&salida] { salida.volcar(); });
    motor.scriptControl.fijarCarpetaDeArchivos(
        [&motor, &archivos] { return carpetaDelGuion(motor, archivos); });
    arranque.arrancar();
    arranque.abrirServidor();
    servicio.listo();
    salida.volcar(); // the first turn of the loop may end seconds from now
    bucle.correr();
    servicio.terminando();
    motor.vista.observar(nullptr);
    return kOrdenado;
}

} // namespace

int main(int argc, char** argv) {
    Opciones opciones;
    CLI::App app{"Driver de comunicaciones entre el supervisor y las estaciones KV2200",
                 std::string(kv::kNombreDelPrograma)};
    app.option_defaults()->group("Opciones");
    app.get_formatter()->label("Usage", "Uso");
    app.get_formatter()->label("OPTIONS", "OPCIONES");
    app.set_help_flag("--help", "Muestra esta ayuda y termina");
    app.set_version_flag("--version", std::string(kv::kNombreDelPrograma) + " " + KV_VERSION,
                         "Muestra la version y termina");
    app.add_option("--carpeta", opciones.carpeta,
                   "Carpeta del programa: ajustes, configuracion, guion y registros")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    app.add_flag("--sin-ventana", opciones.sinVentana, "Corre sin ventana de operador");
    app.add_flag("--traza", opciones.traza, "Escribe en la salida cada linea de las trazas");
    app.add_flag("--comprobar", opciones.comprobar,
                 "Lee la configuracion, dice que se levantaria y que esta mal, y termina");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? kOrdenado : kMalaLinea;
    }
    try {
        std::signal(SIGPIPE, SIG_IGN);
        return opciones.comprobar ? comprobar(opciones) : correr(opciones);
    } catch (const std::exception& falla) {
        std::cerr << kv::kNombreDelPrograma << ": " << falla.what() << '\n';
        return kMalaLinea;
    }
}
