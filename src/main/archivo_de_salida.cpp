// SPDX-License-Identifier: Apache-2.0
#include "main/archivo_de_salida.h"

#include "config/descripciones.h"
#include "config/proyecto.h"
#include "platform/epoll/sistema.h"
#include "platform/ruta.h"
#include "script/guion.h"
#include "text/texto.h"

#include <filesystem>
#include <ostream>

namespace kv {
namespace {

namespace fs = std::filesystem;

/// Also where one of them is still missing: the driver would find it there.
bool mismo(const std::string& a, const std::string& b) {
    std::error_code error;
    return fs::equivalent(a, b, error) || igualSinCaja(fs::weakly_canonical(a, error).string(),
                                                       fs::weakly_canonical(b, error).string());
}

bool esDeLaPlanta(Archivos& archivos, const std::string& carpeta, const std::string& archivo) {
    Ajustes ajustes(archivos, carpeta);
    ajustes.noEscribir();
    Problemas callados;
    const Ubicacion u = ubicarConfiguracion(ajustes, callados);
    const std::string& proyecto = u.rutaProyecto;
    for (const std::string& suyo :
         {ajustes.archivoDeAjustes(), proyecto,
          proyecto.empty() ? proyecto : unirRuta(carpeta, proyecto), // it may be relative
          u.rutaConfiguracion, u.rutaExportacion, rutaDelGuion(u.rutaConfiguracion),
          rutaDeDescripciones(u.rutaConfiguracion)}) {
        if (!suyo.empty() && mismo(archivo, archivos.comoEsta(suyo))) return true;
    }
    return false;
}

} // namespace

bool guardarLoDeAntes(const std::string& carpeta, const std::string& archivo,
                      std::ostream& errores) {
    ArchivosReales archivos;
    const std::string ruta = archivos.comoEsta(archivo);
    if (esDeLaPlanta(archivos, carpeta, ruta)) {
        errores << rutaLegible(ruta) << " es un archivo de la planta: no se escribe en él\n";
        return false;
    }
    std::error_code error;
    if (!fs::is_regular_file(ruta, error) || fs::file_size(ruta, error) == 0) return true;
    fs::copy_file(ruta, ruta + ".anterior", fs::copy_options::overwrite_existing, error);
    if (error)
        errores << "no se puede guardar lo que había en " << rutaLegible(ruta)
                << ": no se escribe en él\n";
    return !error;
}

} // namespace kv
