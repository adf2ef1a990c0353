// SPDX-License-Identifier: Apache-2.0
#include "archivo.h"

#include <fstream>

std::optional<std::string> leerArchivo(const std::string& ruta, std::size_t mayor) {
    std::ifstream in(ruta, std::ios::binary);
    if (!in) return std::nullopt;
    std::string bytes;
    char trozo[65536];
    while (in.read(trozo, sizeof trozo) || in.gcount() > 0) {
        bytes.append(trozo, static_cast<std::size_t>(in.gcount()));
        if (bytes.size() > mayor) return std::nullopt;
    }
    if (in.bad()) return std::nullopt;
    return bytes;
}
