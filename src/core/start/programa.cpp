#include "core/start/programa.h"

#include <array>
#include <csignal>

namespace kv {
namespace {

constexpr std::uint64_t kMaximoDeGrabacion = 1ULL << 30;

} // namespace

Programa::Programa(const Opciones& opciones, std::function<void()> terminar)
    : salida(opciones.traza),
      grabacion(bucle, archivos, opciones.grabar, kMaximoDeGrabacion, opciones.carpeta),
      motor(grabacion.bucle(), grabacion.archivos(), opciones.carpeta), arranque(motor, procesos) {
    motor.vista.observar(&salida);
    constexpr std::array<int, 2> kSenales{SIGINT, SIGTERM};
    bucle.alRecibirSenal(kSenales, [terminar = std::move(terminar)](int) { terminar(); });
    motor.operador.registrarEn(grabacion.registro());
    bucle.alFinalDeVuelta([this] {
        salida.volcar();
        if (grabacion.seLleno()) motor.log.escribirLog("DRIVER", "Grabacion", "llena: no sigue");
    });
    motor.scriptControl.fijarCarpetaDeArchivos(
        [this] { return carpetaDelGuion(motor, grabacion.archivos()); });
}

Programa::~Programa() {
    servicio.terminando();
    motor.vista.observar(nullptr);
}

void Programa::arrancar() {
    grabacion.empezarTramo();
    arranque.arrancar();
    arranque.abrirServidor();
    grabacion.terminarTramo();
    servicio.listo();
    salida.volcar(); // the first turn of the loop may end seconds from now
}

} // namespace kv
