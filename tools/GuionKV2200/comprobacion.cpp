// SPDX-License-Identifier: Apache-2.0
#include "comprobacion.h"

#include "objetos.h"

#include "config/comprobacion.h"
#include "platform/epoll/sistema.h"
#include "script/avisos.h"

#include <filesystem>
#include <iostream>

void avisarDe(const std::string& archivo, const std::string& texto) {
    std::error_code mal;
    const auto carpeta = std::filesystem::absolute(archivo, mal).parent_path().string();
    kv::ArchivosReales archivos;
    kv::Ajustes ajustes(archivos, carpeta);
    const auto planta = kv::direccionesConfiguradas(ajustes);
    kv::LugarDelGuion lugar{planta ? &*planta : nullptr, {objetoDelEscritorio()}};
    for (const kv::AvisoDeGuion& a : kv::avisosDeGuion(texto, lugar))
        std::cerr << archivo << '(' << a.linea << ", " << a.columna << "): aviso: " << a.texto
                  << '\n';
}
