// SPDX-License-Identifier: Apache-2.0
#include "config/proyecto.h"

#include "config/descripciones.h"
#include "config/driver.h"
#include "platform/ruta.h"
#include "text/texto.h"

namespace kv {
namespace {

constexpr std::string_view kClaveDeProyecto = kRutaProyecto.clave;
constexpr std::string_view kExtension = ".KalmorKV2200";
constexpr std::string_view kExtensionDeExportacion = ".KalmorKV2200_Conf";

bool esRelativa(std::string_view ruta) {
    return !ruta.empty() && ruta.front() != '/' && ruta.front() != '\\' &&
           ruta.find(':') == std::string_view::npos;
}

} // namespace

Ubicacion ubicarConfiguracion(Ajustes& ajustes, Problemas& problemas) {
    Ubicacion u;
    const std::string& archivo = ajustes.archivoDeAjustes();
    u.rutaProyecto = ajustes.leerIni(archivo, kSeccionDeProyecto, kClaveDeProyecto, "");
    const std::string proyecto =
        esRelativa(u.rutaProyecto) ? unirRuta(ajustes.carpeta(), u.rutaProyecto) : u.rutaProyecto;
    const bool hayProyecto = !proyecto.empty() && ajustes.existeArchivo(proyecto);
    u.rutaConfiguracion = hayProyecto ? reemplazarSinCaja(proyecto, ".qmx", kExtension)
                                      : unirRuta(ajustes.carpeta(), kArchivoDeConfiguracion);
    u.nombreProyecto = reemplazarSinCaja(nombreDeRuta(u.rutaConfiguracion), kExtension, "");
    u.rutaExportacion = reemplazarSinCaja(u.rutaConfiguracion, kExtension, kExtensionDeExportacion);
    // Without the extension the export would be the project file itself.
    u.desdeExportacion = hayProyecto && u.rutaExportacion != u.rutaConfiguracion &&
                         ajustes.existeArchivo(u.rutaExportacion);
    if (u.rutaProyecto.empty()) return u;
    const std::size_t linea = ajustes.lineaDe(archivo, kSeccionDeProyecto, kClaveDeProyecto);
    const std::string cita = "RutaProyecto=" + citarUtf8(u.rutaProyecto);
    if (!hayProyecto)
        problemas.agregar(archivo, linea, cita + " no existe",
                          "se usa " + std::string(kArchivoDeConfiguracion) +
                              " de la carpeta del programa");
    else if (u.rutaExportacion == u.rutaConfiguracion)
        problemas.agregar(archivo, linea, cita + " no es un proyecto .qmx",
                          "el proyecto se lee como si fuera la configuración");
    return u;
}

ConfiguracionLeida leerConfiguracionUbicada(Ajustes& ajustes, const MensajeDeError& mensaje) {
    ConfiguracionLeida leida;
    Porciones una;
    Trabajo todo = leerConfiguracionUbicada(ajustes, leida, mensaje, una);
    una.hacer(todo);
    return leida;
}

Trabajo leerConfiguracionUbicada(Ajustes& ajustes, ConfiguracionLeida& c,
                                 const MensajeDeError& mensaje, Porciones& porciones) {
    c.ubicacion = ubicarConfiguracion(ajustes, c.problemas);
    if (c.ubicacion.desdeExportacion)
        co_await leerConfiguracionDeProyecto(ajustes.archivos(), c.ubicacion.rutaExportacion,
                                             c.listas, c.problemas, mensaje, porciones);
    else
        co_await leerConfiguracionDeDriver(ajustes.archivos(), c.ubicacion.rutaConfiguracion,
                                           c.listas, c.problemas, porciones);
    const std::string ruta = rutaDeDescripciones(c.ubicacion.rutaConfiguracion);
    co_await leerDescripciones(ajustes.archivos(), ruta, c.listas.descripciones, c.problemas,
                               porciones);
}

} // namespace kv
