// SPDX-License-Identifier: Apache-2.0
#include "comprobacion.h"

#include "archivo.h"
#include "objetos.h"

#include "config/comprobacion.h"
#include "config/csv.h"
#include "platform/epoll/sistema.h"
#include "script/avisos.h"
#include "script/errores.h"
#include "text/windows1252.h"

#include <filesystem>
#include <iostream>

namespace {
void decir(const std::string& archivo, const kv::AvisoDeGuion& a) {
    std::cerr << archivo << '(' << a.linea << ", " << a.columna << "): aviso: " << a.texto << '\n';
}
} // namespace

void avisarDe(const std::string& archivo, const std::string& texto) {
    std::error_code mal;
    const auto carpeta = std::filesystem::absolute(archivo, mal).parent_path().string();
    kv::ArchivosReales archivos;
    kv::Ajustes ajustes(archivos, carpeta);
    const auto planta = kv::direccionesConfiguradas(ajustes);
    kv::LugarDelGuion lugar{planta ? &*planta : nullptr, {objetoDelEscritorio()}};
    for (const kv::AvisoDeGuion& a : kv::avisosDeGuion(texto, lugar))
        decir(archivo, a);
}

std::optional<std::string> leerGuion(const std::string& ruta) {
    auto bytes = leerArchivo(ruta, kv::kMaximoDelGuion);
    if (!bytes) {
        std::error_code mal;
        const bool largo = std::filesystem::file_size(ruta, mal) > kv::kMaximoDelGuion && !mal;
        std::cerr << ruta << ": "
                  << (largo ? kv::kGuionDemasiadoLargo.castellano : "no se puede leer") << '\n';
        return std::nullopt;
    }
    if (bytes->starts_with(kv::kMarcaUtf8)) {
        std::cerr << ruta << "(1, 1): " << kv::kGuionConMarcaUtf8.castellano << '\n';
        return std::nullopt;
    }
    const auto utf8 = kv::avisoDeUtf8(*bytes);
    if (!utf8) return kv::utf8DesdeWindows1252(*bytes);
    decir(ruta, *utf8);
    return bytes;
}
