// SPDX-License-Identifier: Apache-2.0
#include "main/planilla.h"

#include "config/descripciones.h"
#include "config/planilla.h"
#include "config/proyecto.h"
#include "config/validacion.h"
#include "platform/epoll/salida_de_programa.h"
#include "platform/epoll/sistema.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <vector>

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

/// What the configuration that is there has wrong too is only reported: a plant that is served with
/// it is not kept from its table, nor is one that polls nothing yet. False: the table has more, and
/// nothing may be written.
bool sirve(ListasDeConfiguracion& listas, ListasDeConfiguracion deAntes, std::ostream& errores) {
    deAntes.archivo = listas.archivo;
    Problemas antes, ahora;
    const Validacion hoy = validar(deAntes, antes);
    const std::string nada = porQueNoSeAdoptan(listas, validar(listas, ahora));
    ProblemasConocidos conocidos;
    conocidos.conocer(antes);
    const std::vector<Problema> nuevos = conocidos.nuevos(ahora);
    const bool vacia = !nada.empty() && hoy.bloquesConstruidos > 0;
    if (nuevos.empty() && ahora.demas() == 0 && !vacia) {
        decir(errores, ahora);
        return true;
    }
    for (Problema p : nuevos) {
        if (!p.campo.empty()) p.que.insert(0, "columna " + std::string(p.campo) + ": ");
        errores << textoDeProblema(p) << '\n';
    }
    if (vacia) errores << nada << '\n';
    errores << listas.archivo << " está mal donde la configuración de hoy no lo está: no se "
            << "importa nada\n";
    return false;
}

/// What was there before stays beside it.
bool reemplazarGuardando(Archivos& archivos, const std::string& ruta, std::string_view contenido,
                         std::ostream& errores) {
    if (archivos.existe(ruta)) {
        const auto antes = archivos.leer(ruta, kMaximoDeArchivo);
        if (!antes || !archivos.reemplazar(ruta + ".anterior", *antes)) {
            errores << "no se puede guardar lo que había en " << rutaLegible(ruta)
                    << ": no se importa\n";
            return false;
        }
    }
    if (archivos.reemplazar(ruta, contenido)) return true;
    errores << "no se puede escribir " << rutaLegible(ruta) << '\n';
    return false;
}

/// A new one goes beside the file itself where a link leads to it: a service's folder is made from
/// there.
std::string lugarDeDescripciones(Archivos& archivos, const std::string& rutaConfiguracion) {
    std::string ruta = rutaDeDescripciones(rutaConfiguracion);
    std::error_code error;
    const auto real = std::filesystem::canonical(archivos.comoEsta(rutaConfiguracion), error);
    return error || archivos.existe(ruta) ? ruta : rutaDeDescripciones(real.string());
}

/// The table that is to be imported, of a workbook its first sheet; nothing when it cannot be read,
/// which has been reported.
std::optional<std::string> leerTabla(Archivos& archivos, const std::string& archivo,
                                     std::ostream& errores) {
    constexpr std::string_view kComienzoDeLibro = "PK\x03\x04";
    auto contenido = archivos.leer(archivo, kMaximoDeArchivo);
    if (!contenido) errores << "no se puede leer " << archivo << '\n';
    if (!contenido || !contenido->starts_with(kComienzoDeLibro)) return contenido;
    for (const char* donde : {"/PlanillaKV2200", "/../lib/driverkv2200/PlanillaKV2200"}) {
        const std::string programa = carpetaDelPrograma() + donde;
        if (!archivos.existe(programa)) continue;
        contenido = salidaDePrograma({programa, "--", archivo}, kMaximoDeArchivo);
        if (!contenido) errores << archivo << ": no se importa nada\n";
        return contenido;
    }
    errores << archivo << " es un libro .xlsx, y falta con qué leerlo (paquete driverkv2200-xlsx): "
            << "guarde su hoja como CSV\n";
    return std::nullopt;
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
    // Its folder may be reached by another way than the driver's, as where links lead into /etc.
    if (configuracionAtendida(donde.rutaConfiguracion))
        return noHecho(errores, "un driver atiende esta configuración: deténgalo para importar");
    const auto contenido = leerTabla(archivos, archivo, errores);
    if (!contenido) return kNoHecho;
    ListasDeConfiguracion listas;
    leerPlanilla(*contenido, archivo, listas, problemas);
    if (!problemas.ninguno()) {
        decir(errores, problemas);
        return kNoHecho;
    }
    if (!contenido->ends_with('\n'))
        errores << archivo << ": la última línea no termina: el archivo puede estar cortado; se "
                << "toma como está\n";
    const std::string ini = iniDe(listas);
    const std::string& ruta = donde.rutaConfiguracion;
    if (!sirve(listas, leerConfiguracionUbicada(ajustes, {}).listas, errores))
        return kNoHecho; // mends times in the lists
    const bool describe = listas.hayDescripciones && (!listas.descripciones.ninguna() ||
                                                      archivos.existe(rutaDeDescripciones(ruta)));
    if (describe && !reemplazarGuardando(archivos, lugarDeDescripciones(archivos, ruta),
                                         tablaDeDescripciones(listas.descripciones), errores))
        return kNoHecho;
    return reemplazarGuardando(archivos, ruta, ini, errores) ? kHecho : kNoHecho;
}

} // namespace kv
