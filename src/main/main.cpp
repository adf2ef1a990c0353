// SPDX-License-Identifier: Apache-2.0
#include "cli/castellano.h"
#include "cli/salida_entera.h"
#include "config/comprobacion.h"
#include "config/informe_json.h"
#include "evidence/evidencia.h"
#include "main/archivo_de_salida.h"
#include "main/grabacion.h"
#include "main/planilla.h"
#include "main/programa.h"
#include "operator/revision_de_guion.h"
#include "text/nombre_del_programa.h"
#ifdef KV_VENTANA
#include "main/con_ventana.h"
#endif

#include <CLI/CLI.hpp>

#include <charconv>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>

namespace kv {
namespace {

constexpr int kSalidaIncompleta = 1;

/// Asks the plant itself, which takes as long as its stations may.
void alcanzar(BucleEpoll& bucle, Revision& r) {
    ConfiguracionLeida& c = r.configuracion;
    SondeoDeAlcance sondeo(bucle, c.listas, r.validacion, r.pausaMs);
    bool listo = false;
    sondeo.empezar([&] {
        listo = true;
        bucle.detener();
    });
    if (!listo) bucle.correr();
    r.alcance = sondeo.resultados();
    revisarAlcance(c.listas, r.validacion, r.alcance, c.problemas);
}

int soloComprobar(const Opciones& opciones) {
    ArchivosReales archivos;
    Ajustes ajustes(archivos, opciones.carpeta);
    Revision r = revisar(ajustes);
    revisarGuion(archivos, r);
    revisarEscritura(archivos, opciones.carpeta, r.configuracion.problemas);
    BucleEpoll bucle;
    revisarEscucha(bucle, ajustes, r);
    if (opciones.alcanzar) alcanzar(bucle, r);
    std::cout << (opciones.json ? informeJsonDe(r) : informeDe(r));
    return r.resultado();
}

int explicar(const std::string& codigo) {
    const auto cual = novedadDe(codigo);
    if (!cual) {
        std::cerr << kNombreDelPrograma << ": ninguna entrada del registro tiene el numero "
                  << codigo << '\n';
        return kMalaLinea;
    }
    std::cout << explicacionDe(*fichaDe(*cual));
    return kOrdenado;
}

int correrSinVentana(const Opciones& opciones) {
    BucleEpoll* bucle = nullptr;
    Programa programa(opciones, [&bucle] { bucle->detener(); });
    bucle = &programa.bucle;
    if (!programa.arranque.soyElUnico()) return kYaCorre;
    programa.arrancar();
    programa.bucle.correr();
    programa.cerrar();
    programa.salida.volcarTodo();
    // A trace that nobody takes does not stop the driver, but it is not forgotten either.
    const bool entera = !programa.salida.fallo();
    return programa.resultado() == kOrdenado && !entera ? kSalidaIncompleta : programa.resultado();
}

int correr(const Opciones& opciones) {
#ifdef KV_VENTANA
    if (!opciones.sinVentana) return correrConVentana(opciones);
#endif
    return correrSinVentana(opciones);
}

std::string esCarpeta(const std::string& ruta) {
    std::error_code mal;
    return std::filesystem::is_directory(ruta, mal) ? "" : "no existe la carpeta " + ruta;
}

/// "64K", "300M", "2G", in bytes; 0 for anything else or less.
std::uint64_t bytesDeTexto(const std::string& texto) {
    constexpr std::string_view kUnidades = "KMG";
    constexpr std::uint64_t kMasGrande = 1U << 20;
    constexpr std::uint64_t kMenos = 64U << 10;
    std::uint64_t n = 0;
    const char* const fin = texto.data() + texto.size();
    const auto [unidad, error] = std::from_chars(texto.data(), fin, n);
    if (error != std::errc{} || n > kMasGrande || fin - unidad != 1) return 0;
    const auto cual = kUnidades.find(*unidad);
    if (cual == std::string_view::npos) return 0;
    const std::uint64_t bytes = n << (10 * (cual + 1));
    return bytes < kMenos ? 0 : bytes;
}

void ponerGrabacion(CLI::App& app, ComoGrabar& grabar, CLI::Option* sinVentana) {
    auto* archivo = app.add_option("--grabar", grabar.archivo,
                                   "Graba todo lo que le llega al driver, para reproducirlo "
                                   "despues; las tres grabaciones de antes quedan en ARCHIVO.1 "
                                   "(la ultima), .2 y .3")
                        ->type_name("ARCHIVO");
    app.add_option_function<std::string>(
           "--grabar-maximo", [&grabar](const std::string& t) { grabar.maximo = bytesDeTexto(t); },
           "Hasta donde crece una grabacion, como 300M o 2G; si no se dice, 1G")
        ->check(CLI::Validator(
            [](const std::string& t) {
                return bytesDeTexto(t) > 0 ? "" : "no es un tamano desde 64K, como 300M o 2G: " + t;
            },
            ""))
        ->type_name("TAMANO")
        ->needs(archivo);
    app.add_flag("--grabar-en-anillo", grabar.enAnillo,
                 "Cuando la grabacion se llena, el driver arranca de nuevo y sigue en otra")
        ->needs(archivo)
        ->needs(sinVentana); // what an operator was typing would be lost
}

void ponerPlanilla(CLI::App& app, Opciones& opciones, CLI::Option* comprobar) {
    auto* exportar = app.add_option("--exportar", opciones.exportar,
                                    "Escribe la configuracion como planilla de calculo y termina; "
                                    "lo que habia en el archivo queda en ARCHIVO.csv.anterior")
                         ->type_name("ARCHIVO.csv")
                         ->excludes(comprobar);
    app.add_option("--importar", opciones.importar,
                   "Hace la configuracion de una planilla (.csv o .xlsx) y termina; la de antes "
                   "queda al lado, con "
                   ".anterior en su nombre")
        ->type_name("ARCHIVO")
        ->excludes(comprobar)
        ->excludes(exportar);
}

void ponerEvidencia(CLI::App& app, Opciones& opciones) {
    auto* evidencia =
        app.add_option("--evidencia", opciones.evidencia,
                       "Junta en un archivo lo que hace falta para saber que paso en la planta "
                       "(tambien de un driver que corre), y termina; lo que habia en el archivo "
                       "queda en SALIDA.tar.anterior")
            ->type_name("SALIDA.tar");
    app.add_option("--con-grabacion", opciones.conGrabacion,
                   "Con --evidencia: que grabacion va; si no se dice, la ultima de la carpeta")
        ->type_name("ARCHIVO")
        ->needs(evidencia);
}

/// The exit code if the program is to end at once.
std::optional<int> leerLinea(int argc, char** argv, Opciones& opciones) {
    CLI::App app{"Driver de comunicaciones entre el supervisor y las estaciones KV2200",
                 std::string(kNombreDelPrograma)};
    ponerEnCastellano(app);
    app.add_option("--carpeta", opciones.carpeta,
                   "Carpeta del programa: ajustes, configuracion, guion y registros")
        ->check(CLI::Validator(esCarpeta, ""))
        ->type_name("DIR");
    auto* sinVentana =
        app.add_flag("--sin-ventana", opciones.sinVentana, "Corre sin ventana de operador");
    app.add_flag("--traza", opciones.traza, "Escribe en la salida cada linea de las trazas");
    auto* comprobar = app.add_flag(
        "--comprobar", opciones.comprobar,
        "Lee la configuracion, dice que se levantaria y que esta mal, y termina: 0 si nada, 1 si "
        "hay problemas, 2 si asi no atenderia la planta");
    app.add_flag("--alcanzar", opciones.alcanzar,
                 "Ademas se conecta a cada direccion y le pregunta una vez a cada estacion")
        ->needs(comprobar);
    app.add_flag("--json", opciones.json, "Lo comprobado, como un objeto JSON")->needs(comprobar);
    ponerPlanilla(app, opciones, comprobar);
    app.add_option("--explicar", opciones.explicar,
                   "Dice causa, que mirar y que hacer de una entrada del registro, por su numero, "
                   "y termina")
        ->type_name("N");
    ponerEvidencia(app, opciones);
    ponerGrabacion(app, opciones.grabar, sinVentana);
    app.add_option("--reproducir", opciones.reproducir,
                   "Repite lo grabado, sin red ni archivos, y muestra las trazas")
        ->type_name("ARCHIVO");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return terminarLinea(app, e, std::cout, std::cerr);
    }
    return std::nullopt;
}

} // namespace
} // namespace kv

int main(int argc, char** argv) {
    kv::Opciones opciones;
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is a write that fails
    if (const auto fin = kv::leerLinea(argc, argv, opciones))
        return kv::conSalidaEntera(*fin, kv::kNombreDelPrograma, std::cout, std::cerr);
    try {
        std::signal(SIGHUP, SIG_IGN); // a terminal that goes; who serves a plant reads anew then
        if (!opciones.reproducir.empty()) return kv::reproducir(opciones.reproducir, std::cerr);
        if (!opciones.explicar.empty())
            return kv::conSalidaEntera(kv::explicar(opciones.explicar), kv::kNombreDelPrograma,
                                       std::cout, std::cerr);
        for (std::string* salida : {&opciones.exportar, &opciones.evidencia}) {
            if (!salida->empty() && !kv::prepararSalida(opciones.carpeta, *salida, std::cerr))
                return kv::kSalidaIncompleta;
        }
        if (!opciones.exportar.empty())
            return kv::exportarPlanilla(opciones.carpeta, opciones.exportar, std::cerr);
        if (!opciones.importar.empty())
            return kv::importarPlanilla(opciones.carpeta, opciones.importar, std::cerr);
        if (!opciones.evidencia.empty())
            return kv::hacerEvidencia(opciones.carpeta, opciones.evidencia, opciones.conGrabacion,
                                      std::cerr);
        if (opciones.comprobar)
            return kv::conSalidaEntera(kv::soloComprobar(opciones), kv::kNombreDelPrograma,
                                       std::cout, std::cerr);
        kv::usarPaginasGrandes(argv);
        kv::pedirDescriptores();
        const int resultado = kv::correr(opciones);
        if (resultado == kv::kDeNuevo) kv::empezarDeNuevo(argv);
        return resultado;
    } catch (const std::exception& falla) {
        std::cerr << kv::kNombreDelPrograma << ": " << falla.what() << '\n';
        return kv::kMalaLinea;
    }
}
