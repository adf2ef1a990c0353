// SPDX-License-Identifier: Apache-2.0
#include "main/programa.h"

#include "cli/version.h"
#include "platform/ruta.h"
#include "text/nombre_del_programa.h"

#include <array>
#include <csignal>
#include <utility>

namespace kv {
namespace {

std::string nombreDeLosRegistros() {
    const std::string nombre = nombreDelPrograma();
    return nombre.empty() ? std::string(kNombreDelPrograma) : nombre;
}

} // namespace

void revisarEscritura(Archivos& archivos, const std::string& carpeta, Problemas& problemas) {
    const std::string registros = unirRuta(carpeta, "LOGS_DRIVER");
    const bool hay = archivos.existe(registros);
    const auto probar = [&](const std::string& cual, std::string perdido) {
        const std::string porQue = porQueNoSeEscribeEn(cual);
        if (!porQue.empty())
            problemas.agregar(archivos.comoEsta(cual), 0, "no se puede escribir en ella: " + porQue,
                              std::move(perdido));
    };
    const std::string sinRegistro = "no hay registro del driver ni de las escrituras";
    probar(carpeta, "no se abre la puerta local ni se agregan los ajustes que faltan" +
                        (hay ? "" : "; " + sinRegistro));
    if (hay) probar(registros, sinRegistro);
}

Programa::Programa(const Opciones& opciones, std::function<void()> terminar)
    : salida(opciones.traza), grabacion(bucle, archivos, opciones.grabar, opciones.carpeta),
      motor(grabacion.bucle(), grabacion.archivos(), opciones.carpeta, nombreDeLosRegistros()),
      arranque(motor, procesos), terminar_(std::move(terminar)),
      log_(archivos, bucle.reloj(), opciones.carpeta, nombreDeLosRegistros()) {
    motor.vista.observar(&salida);
    if (DiarioReal::hay()) {
        diario_.emplace();
        motor.log.avisarA(&*diario_);
        log_.avisarA(&*diario_);
    }
    if (opciones.traza) traza_.emplace(motor.sucesos, motor.tablas, salida);
    constexpr std::array<int, 3> kSenales{SIGINT, SIGTERM, SIGHUP};
    bucle.alRecibirSenal(kSenales, [this](int cual) {
        if (cual == SIGHUP) return recargar();
        resultado_ = kOrdenado;
        terminar_();
    });
    std::signal(SIGHUP, SIG_DFL); // blocked by now; an ignored one is not delivered
    motor.operador.registrarEn(grabacion.registro());
    motor.recarga.alTerminar([this] { servicio.listo(); });
    bucle.alFinalDeVuelta([this] {
        salida.volcar();
        mirarGrabacion();
        mirarDescriptores();
        mirarRegistro();
    });
    motor.scriptControl.fijarDisco([this] {
        return grabacion.disco(
            discoDeCarpeta(carpetaDelGuion(motor.ajustes, grabacion.archivos())));
    });
}

void Programa::cerrar() {
    motor.terminar();
    const bool otra = resultado() == kDeNuevo;
    log_.escribir({"DRIVER",
                   "Fin",
                   otra ? "sigue de nuevo en otra grabacion" : "en orden",
                   {},
                   Novedad::Fin});
}

Programa::~Programa() {
    if (resultado() == kOrdenado) servicio.terminando();
    motor.vista.observar(nullptr);
    motor.log.avisarA(nullptr);
}

void Programa::arrancar() {
    log_.escribir({"DRIVER", "Arranque", conVersion(kNombreDelPrograma), {}, Novedad::Arranque});
    mirarCarpetas();
    grabacion.empezar();
    arranque.arrancar();
    arranque.abrirServidor();
    grabacion.empezada();
    servicio.listo();
    salida.volcar(); // the first turn of the loop may end seconds from now
}

/// Whoever looks for a log that cannot be written finds nothing: it has to be said elsewhere.
void Programa::mirarCarpetas() {
    Problemas problemas;
    revisarEscritura(archivos, motor.ajustes.carpeta(), problemas);
    for (const Problema& p : problemas.lista()) {
        const std::string texto = textoDeProblema(p);
        log_.escribir({"DRIVER", "Carpeta", texto, {}, Novedad::CarpetaSinEscritura});
        salida.alMostrarMensaje("Carpeta", texto);
        pierde_ = true; // what the log loses is in this message
    }
}

void Programa::recargar() {
    servicio.recargando();
    motor.operador.recargar();
}

/// Says so at once, and then once an hour for as long as it lasts.
void Programa::mirarDescriptores() {
    constexpr std::int64_t kDeNuevoMs = 3'600'000;
    const std::uint64_t faltaron = bucle.faltaronDescriptores() - faltaronDescriptores_;
    if (faltaron == 0) return;
    const std::int64_t ahora = bucle.reloj().monotonicoMs();
    if (faltaronMs_ != 0 && ahora - faltaronMs_ < kDeNuevoMs) return;
    faltaronDescriptores_ += faltaron;
    faltaronMs_ = ahora;
    const std::string texto =
        "no alcanzan los descriptores que el sistema permite (LimitNOFILE, ulimit -n): " +
        std::to_string(faltaron) + " conexiones no se pudieron abrir";
    log_.escribir({"DRIVER", "Descriptores", texto, {}, Novedad::Descriptores});
    salida.alMostrarMensaje("Descriptores", texto);
}

/// Says it once for as long as it lasts, and not more than once a minute: it may come and go.
void Programa::mirarRegistro() {
    log_.alPasarElTiempo();
    const bool pierde = motor.log.pierde() || log_.pierde();
    if (!pierde || pierde_) {
        pierde_ = pierde;
        return;
    }
    const std::int64_t ahora = bucle.reloj().monotonicoMs();
    if (pierdeMs_ != 0 && ahora - pierdeMs_ < kUnMinutoMs) return;
    pierde_ = true;
    pierdeMs_ = ahora;
    const std::string porQue = porQueNoSeEscribeEn(log_.carpeta());
    const std::string texto = archivos.comoEsta(log_.carpeta()) +
                              ": se pierden entradas del registro" +
                              (porQue.empty() ? "" : ": " + porQue);
    log_.escribir({"DRIVER", "Registro", texto, {}, Novedad::EntradasPerdidas});
    salida.alMostrarMensaje("Registro", texto);
}

void Programa::mirarGrabacion() {
    if (const std::string novedad = grabacion.novedad(); !novedad.empty()) {
        motor.log.escribir({"DRIVER", "Grabacion", novedad, {}, Novedad::Grabacion});
        motor.vista.mostrarMensaje(novedad, "Grabacion");
    }
    // A write that waits is lost with the process.
    if (resultado_ || !grabacion.pideOtra() || motor.ejecucion.enEspera() > 0) return;
    resultado_ = kDeNuevo;
    terminar_();
}

} // namespace kv
