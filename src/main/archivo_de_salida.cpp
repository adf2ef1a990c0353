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
#include <string_view>

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

/// What stands in the place of a file without being a file; nothing where a file may be written.
std::string_view loQueNoEsArchivo(const std::string& ruta) {
    std::error_code error;
    switch (fs::status(ruta, error).type()) {
    case fs::file_type::regular:
    case fs::file_type::not_found:
        return {};
    case fs::file_type::directory:
        return "una carpeta";
    case fs::file_type::fifo:
        return "una tubería";
    case fs::file_type::socket:
        return "un zócalo";
    case fs::file_type::block:
    case fs::file_type::character:
        return "un dispositivo";
    default:
        return "algo que no se puede mirar";
    }
}

} // namespace

bool prepararSalida(const std::string& carpeta, std::string& archivo, std::ostream& errores) {
    ArchivosReales archivos;
    std::error_code error;
    archivo = archivos.comoEsta(archivo);
    if (esDeLaPlanta(archivos, carpeta, archivo)) {
        errores << rutaLegible(archivo) << " es un archivo de la planta: no se escribe en él\n";
        return false;
    }
    if (const auto que = loQueNoEsArchivo(archivo); !que.empty()) {
        errores << rutaLegible(archivo) << " no es un archivo sino " << que
                << ": no se escribe en su lugar\n";
        return false;
    }
    if (!fs::exists(archivo, error)) return true;
    archivo = fs::canonical(archivo, error).string();
    if (!error && fs::file_size(archivo, error) > 0)
        fs::copy_file(archivo, archivo + ".anterior", fs::copy_options::overwrite_existing, error);
    if (error)
        errores << "no se puede guardar lo que había en " << rutaLegible(archivo)
                << ": no se escribe en él\n";
    return !error;
}

} // namespace kv
