// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/archivos_simulados.h"

#include "text/texto.h"

namespace kv {

std::string ArchivosSimulados::clave(std::string_view ruta) {
    std::string c = minusculas(ruta);
    for (char& x : c) {
        if (x == '\\') x = '/';
    }
    return c;
}

bool ArchivosSimulados::existe(const std::string& ruta) { return huella(ruta).existe; }

HuellaDeArchivo ArchivosSimulados::huella(const std::string& ruta) {
    const std::string c = clave(ruta);
    if (carpetas_.contains(c)) return {true, 0, 0, 0};
    const auto a = archivos_.find(c);
    if (a == archivos_.end()) return {};
    return {true, a->second.version, a->second.contenido.size(), 1};
}

std::optional<std::string> ArchivosSimulados::leer(const std::string& ruta, std::size_t maximo) {
    ++lecturas_;
    const auto a = archivos_.find(clave(ruta));
    if (a == archivos_.end() || a->second.contenido.size() > maximo) return std::nullopt;
    return a->second.contenido;
}

bool ArchivosSimulados::reemplazar(const std::string& ruta, std::string_view contenido) {
    if (niega(ruta)) return false;
    poner(ruta, std::string(contenido));
    return true;
}

bool ArchivosSimulados::agregar(const std::string& ruta, std::string_view lineas) {
    if (niega(ruta)) return false;
    Archivo& a = archivos_[clave(ruta)];
    if (!a.contenido.empty() && a.contenido.back() != '\n') a.contenido += "\r\n";
    a.contenido += lineas;
    a.version = ++version_;
    return true;
}

bool ArchivosSimulados::crearCarpeta(const std::string& ruta) {
    if (niega(ruta)) return false;
    carpetas_.insert(clave(ruta));
    return true;
}

void ArchivosSimulados::poner(const std::string& ruta, std::string contenido) {
    archivos_[clave(ruta)] = {std::move(contenido), ++version_};
}

void ArchivosSimulados::borrar(const std::string& ruta) { archivos_.erase(clave(ruta)); }

std::vector<std::string> ArchivosSimulados::en(std::string_view carpeta) const {
    std::vector<std::string> rutas;
    const std::string prefijo = clave(carpeta);
    for (auto a = archivos_.lower_bound(prefijo);
         a != archivos_.end() && a->first.starts_with(prefijo); ++a)
        rutas.push_back(a->first);
    return rutas;
}

std::string ArchivosSimulados::contenido(const std::string& ruta) {
    const auto a = archivos_.find(clave(ruta));
    return a == archivos_.end() ? std::string() : a->second.contenido;
}

} // namespace kv
