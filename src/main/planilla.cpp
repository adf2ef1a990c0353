// SPDX-License-Identifier: Apache-2.0
#include "main/planilla.h"

#include "config/planilla.h"
#include "config/proyecto.h"
#include "config/validacion.h"
#include "platform/epoll/sistema.h"

#include <ostream>

namespace kv {
namespace {

constexpr int kHecho = 0;
constexpr int kNoHecho = 1;

int noHecho(std::ostream& errores, const std::string& que) {
    errores << que << '\n';
    return kNoHecho;
}

void decir(std::ostream& errores, const Problemas& problemas) {
    for (const Problema& p : problemas.lista())
        errores << textoDeProblema(p) << '\n';
    if (problemas.demas() > 0) errores << "... y " << problemas.demas() << " más\n";
}

} // namespace

int exportarPlanilla(const std::string& carpeta, const std::string& archivo,
                     std::ostream& errores) {
    ArchivosReales archivos;
    Ajustes ajustes(archivos, carpeta);
    ajustes.noEscribir();
    const ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    if (!archivos.reemplazar(archivo, planillaDe(c.listas)))
        return noHecho(errores, "no se puede escribir " + archivo);
    decir(errores, c.problemas);
    return c.problemas.ninguno() ? kHecho : kNoHecho;
}

int importarPlanilla(const std::string& carpeta, const std::string& archivo,
                     std::ostream& errores) {
    ProcesosReales procesos;
    if (!procesos.tomarCarpeta(carpeta))
        return noHecho(errores, "un driver atiende esta planta: deténgalo para importar");
    ArchivosReales archivos;
    Ajustes ajustes(archivos, carpeta);
    ajustes.noEscribir();
    Problemas problemas;
    const Ubicacion donde = ubicarConfiguracion(ajustes, problemas);
    if (donde.desdeExportacion)
        return noHecho(errores,
                       "la configuración de esta planta es la exportación de un proyecto, " +
                           rutaLegible(donde.rutaExportacion));
    const auto contenido = archivos.leer(archivo, kMaximoDeArchivo);
    if (!contenido) return noHecho(errores, "no se puede leer " + archivo);
    ListasDeConfiguracion listas;
    leerPlanilla(*contenido, archivo, listas, problemas);
    if (!problemas.ninguno()) {
        decir(errores, problemas);
        return kNoHecho;
    }
    const std::string ini = iniDe(listas);
    static_cast<void>(validar(listas, problemas)); // brings times back to their defaults
    decir(errores, problemas);
    const std::string& ruta = donde.rutaConfiguracion;
    if (archivos.existe(ruta)) {
        const auto antes = archivos.leer(ruta, kMaximoDeArchivo);
        if (!antes || !archivos.reemplazar(ruta + ".anterior", *antes))
            return noHecho(errores, "no se puede guardar la configuración de antes: no se importa");
    }
    if (!archivos.reemplazar(ruta, ini)) return noHecho(errores, "no se puede escribir " + ruta);
    return kHecho;
}

} // namespace kv
