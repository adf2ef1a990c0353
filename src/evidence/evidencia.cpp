// SPDX-License-Identifier: Apache-2.0
#include "evidence/evidencia.h"

#include "config/descripciones.h"
#include "config/proyecto.h"
#include "evidence/disector.h"
#include "evidence/hora.h"
#include "evidence/resumen.h"
#include "evidence/tar.h"
#include "log/novedades.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"
#include "platform/ruta.h"
#include "recording/cinta.h"
#include "script/guion.h"
#include "text/direccion_de_red.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

namespace kv {
namespace {

namespace fs = std::filesystem;

const std::string kEn = "evidencia/";
constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;
constexpr std::uint64_t kDeUnRegistro = 8 * kMiB;
constexpr std::uint64_t kDeRegistros = 32 * kMiB;
constexpr std::uint64_t kDeUnaGrabacion = 256 * kMiB;
constexpr std::uint64_t kDeUnArchivo = 64 * kMiB;
constexpr std::size_t kAvisos = 3;

/// The regular files of a folder, the newest first.
std::vector<fs::path> archivosDe(const fs::path& carpeta) {
    std::vector<std::pair<fs::file_time_type, fs::path>> todos;
    std::error_code error;
    for (fs::directory_iterator i(carpeta, error), fin; !error && i != fin; i.increment(error)) {
        std::error_code suyo;
        if (i->is_regular_file(suyo)) todos.emplace_back(i->last_write_time(suyo), i->path());
    }
    std::sort(todos.begin(), todos.end(), std::greater<>());
    std::vector<fs::path> rutas;
    rutas.reserve(todos.size());
    for (auto& [cuando, ruta] : todos)
        rutas.push_back(std::move(ruta));
    return rutas;
}

/// Whether the number at the end of an entry of the log is that of an error or a warning.
bool esAviso(std::string_view entrada) {
    constexpr int kAviso = 4;
    const std::size_t blanco = entrada.find_last_of(" :");
    const auto cual =
        blanco == std::string_view::npos ? std::nullopt : novedadDe(entrada.substr(blanco + 1));
    const FichaDeNovedad* ficha = cual ? fichaDe(*cual) : nullptr;
    return ficha != nullptr && ficha->prioridad <= kAviso;
}

class Evidencia {
  public:
    Evidencia(std::string carpeta, const std::string& archivo, const FechaHora& ahora,
              std::ostream& errores)
        : carpeta_(std::move(carpeta)), tar_(archivo, segundosUniversales(ahora)),
          errores_(errores) {
        datos_.hecha = ahora;
        std::error_code error;
        const fs::path entera = fs::weakly_canonical(carpeta_, error);
        datos_.carpeta = error ? carpeta_ : entera.string();
    }

    void planta();
    void registros();
    void grabaciones(const std::string& otra);
    void vivo();
    void terminar();

  private:
    std::int64_t poner(const fs::path& ruta, const std::string& nombre, std::uint64_t maximo);
    void ponerSiHay(const std::string& ruta, const std::string& nombre);
    void leerRegistro(const fs::path& ruta);
    void ponerGrabacion(const fs::path& ruta);
    void falta(const std::string& que);

    std::string carpeta_;
    Tar tar_;
    std::ostream& errores_;
    ArchivosReales archivos_;
    DatosDelResumen datos_;
    Vivo vivo_;
    std::set<std::uint16_t> puertos_; ///< of the configured stations
};

void Evidencia::falta(const std::string& que) {
    errores_ << que << '\n';
    datos_.faltan.push_back(que);
}

std::int64_t Evidencia::poner(const fs::path& ruta, const std::string& nombre,
                              std::uint64_t maximo) {
    const std::int64_t n = tar_.agregarArchivo(kEn + nombre, ruta.string(), maximo);
    std::error_code error;
    if (n < 0) {
        falta("no se puede leer " + ruta.string());
    } else if (fs::file_size(ruta, error) > maximo && !error) {
        falta("de " + ruta.string() + " está sólo el final");
    }
    return n;
}

void Evidencia::ponerSiHay(const std::string& ruta, const std::string& nombre) {
    if (archivos_.existe(ruta)) poner(archivos_.comoEsta(ruta), nombre, kDeUnArchivo);
}

void Evidencia::planta() {
    Ajustes ajustes(archivos_, carpeta_);
    ajustes.noEscribir();
    const ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    const Ubicacion& u = c.ubicacion;
    const std::string& ruta = u.desdeExportacion ? u.rutaExportacion : u.rutaConfiguracion;
    const auto n = [](std::size_t cuantos) { return std::to_string(cuantos); };
    datos_.configuracion =
        archivos_.comoEsta(ruta) + ": " + n(c.listas.puertos.size()) + " puertos, " +
        n(c.listas.estaciones.size()) + " estaciones, " + n(c.listas.bloques.size()) +
        " bloques; problemas: " + n(c.problemas.lista().size() + c.problemas.demas());
    for (const Estacion& e : c.listas.estaciones) {
        if (const auto puerto = puertoTcpDeTexto(e.puertoTCP)) puertos_.insert(*puerto);
    }
    ponerSiHay(ajustes.archivoDeAjustes(), std::string(kArchivoDeAjustes));
    ponerSiHay(ruta, std::string(nombreDeRuta(ruta)));
    const std::string descripciones = rutaDeDescripciones(u.rutaConfiguracion);
    ponerSiHay(descripciones, std::string(kArchivoDeDescripciones));
    const std::string guion = rutaDelGuion(u.rutaConfiguracion);
    if (guion.empty() || !archivos_.existe(guion)) return;
    datos_.guion = archivos_.comoEsta(guion);
    ponerSiHay(guion, std::string(nombreDeRuta(guion)));
}

/// The last start and the last warnings of a day's log; those of later days are known already.
void Evidencia::leerRegistro(const fs::path& ruta) {
    std::ifstream archivo(ruta, std::ios::binary);
    std::error_code error;
    const std::uint64_t largo = fs::file_size(ruta, error);
    if (!error && largo > kDeUnRegistro)
        archivo.seekg(static_cast<std::streamoff>(largo - kDeUnRegistro));
    std::vector<std::string> suyos;
    std::string arranque;
    for (std::string linea; std::getline(archivo, linea);) {
        const std::string_view entrada = recortar(linea);
        if (entrada.ends_with(codigoDe(Novedad::Arranque)))
            arranque = utf8DesdeWindows1252(entrada);
        if (!esAviso(entrada)) continue;
        suyos.push_back(utf8DesdeWindows1252(entrada));
        if (suyos.size() > kAvisos) suyos.erase(suyos.begin());
    }
    if (datos_.arranque.empty()) datos_.arranque = arranque;
    while (!suyos.empty() && datos_.avisos.size() < kAvisos) {
        datos_.avisos.insert(datos_.avisos.begin(), suyos.back());
        suyos.pop_back();
    }
}

void Evidencia::registros() {
    std::uint64_t quedan = kDeRegistros;
    std::size_t callados = 0;
    for (const fs::path& ruta : archivosDe(fs::path(carpeta_) / "LOGS_DRIVER")) {
        const std::string nombre = ruta.filename().string();
        if (quedan == 0) {
            ++callados;
            continue;
        }
        if (nombre.ends_with("ArchivoLog.txt")) leerRegistro(ruta);
        const std::int64_t n =
            poner(ruta, "LOGS_DRIVER/" + nombre, std::min(quedan, kDeUnRegistro));
        quedan -= static_cast<std::uint64_t>(std::max<std::int64_t>(0, n));
    }
    if (callados > 0) falta("no entran " + std::to_string(callados) + " registros más viejos");
}

void Evidencia::ponerGrabacion(const fs::path& ruta) {
    std::error_code error;
    const std::uint64_t largo = fs::file_size(ruta, error);
    const std::string nombre = ruta.filename().string();
    if (!error && largo > kDeUnaGrabacion) {
        datos_.grabaciones.push_back(ruta.string() + " no está: es muy grande");
        return falta("la grabación " + ruta.string() +
                     " no entra: " + std::to_string(largo / kMiB) + " MiB");
    }
    if (poner(ruta, "grabacion/" + nombre, kDeUnaGrabacion) >= 0)
        datos_.grabaciones.push_back(nombre + ", " + std::to_string(largo) + " bytes");
}

/// Recordings know themselves by how they begin; of those in the folder the newest one.
void Evidencia::grabaciones(const std::string& otra) {
    if (!otra.empty()) return ponerGrabacion(otra);
    for (const fs::path& ruta : archivosDe(carpeta_)) {
        std::string comienzo(kMarcaDeCinta.size(), '\0');
        std::ifstream(ruta, std::ios::binary)
            .read(comienzo.data(), static_cast<std::streamsize>(comienzo.size()));
        if (comienzo == kMarcaDeCinta) return ponerGrabacion(ruta);
    }
}

void Evidencia::vivo() {
    preguntar(carpeta_, vivo_);
    if (!vivo_.falla.empty()) errores_ << vivo_.falla << '\n'; // the summary says so itself
    for (const auto& [que, renglones] : vivo_.renglones)
        tar_.agregar(kEn + que + ".jsonl", renglones);
    if (vivo_.captura.tramas() == 0) return;
    puertos_.insert(vivo_.captura.puertos().begin(), vivo_.captura.puertos().end());
    tar_.agregar(kEn + "tramas.pcap", vivo_.captura.bytes());
    tar_.agregar(kEn + "kv2200.lua", disectorPara(puertos_));
}

void Evidencia::terminar() {
    tar_.agregar(kEn + "resumen.txt", resumenDe(datos_, vivo_));
    tar_.terminar();
}

} // namespace

int hacerEvidencia(const std::string& carpeta, const std::string& archivo,
                   const std::string& grabacion, std::ostream& errores) {
    try {
        Evidencia e(carpeta, archivo, RelojReal().ahora(), errores);
        e.vivo(); // first: it changes
        e.planta();
        e.registros();
        e.grabaciones(grabacion);
        e.terminar();
        return 0;
    } catch (const std::system_error& falla) {
        errores << falla.what() << '\n';
        return 1;
    }
}

} // namespace kv
