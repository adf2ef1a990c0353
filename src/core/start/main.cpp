#include "config/comprobacion.h"
#include "core/start/arranque.h"
#include "core/start/grabacion.h"
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
constexpr std::uint64_t kMaximoDeGrabacion = 1ULL << 30;

struct Opciones {
    std::string carpeta = kv::carpetaDelPrograma();
    bool sinVentana = false;
    bool traza = false;
    bool comprobar = false;
    std::string grabar;
    std::string reproducir;
};

int comprobar(const Opciones& opciones) {
    kv::ArchivosReales archivos;
    kv::Ajustes ajustes(archivos, opciones.carpeta);
    const kv::Comprobacion comprobacion = kv::comprobar(ajustes);
    std::cout << comprobacion.informe;
    return comprobacion.resultado;
}

int correr(const Opciones& opciones) {
    kv::BucleEpoll bucle;
    kv::AvisosDeServicio servicio(bucle);
    kv::ArchivosReales archivos;
    kv::ProcesosReales procesos;
    kv::SalidaDeTraza salida(opciones.traza);
    kv::Grabacion grabacion(bucle, archivos, opciones.grabar, kMaximoDeGrabacion, opciones.carpeta);
    kv::Motor motor(grabacion.bucle(), grabacion.archivos(), opciones.carpeta);
    motor.vista.observar(&salida);
    kv::Arranque arranque(motor, procesos);
    if (!arranque.soyElUnico()) return kYaCorre;
    constexpr std::array<int, 2> kSenales{SIGINT, SIGTERM};
    bucle.alRecibirSenal(kSenales, [&bucle](int) { bucle.detener(); });
    bucle.alFinalDeVuelta([&] {
        salida.volcar();
        if (grabacion.seLleno()) motor.log.escribirLog("DRIVER", "Grabacion", "llena: no sigue");
    });
    motor.scriptControl.fijarCarpetaDeArchivos(
        [&] { return kv::carpetaDelGuion(motor, grabacion.archivos()); });
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
    app.add_option("--grabar", opciones.grabar,
                   "Graba todo lo que le llega al driver, para reproducirlo despues")
        ->type_name("ARCHIVO");
    app.add_option("--reproducir", opciones.reproducir,
                   "Repite lo grabado, sin red ni archivos, y muestra las trazas")
        ->check(CLI::ExistingFile)
        ->type_name("ARCHIVO");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? kOrdenado : kMalaLinea;
    }
    try {
        std::signal(SIGPIPE, SIG_IGN);
        if (!opciones.reproducir.empty()) return kv::reproducir(opciones.reproducir, std::cerr);
        return opciones.comprobar ? comprobar(opciones) : correr(opciones);
    } catch (const std::exception& falla) {
        std::cerr << kv::kNombreDelPrograma << ": " << falla.what() << '\n';
        return kMalaLinea;
    }
}
