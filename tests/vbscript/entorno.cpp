// SPDX-License-Identifier: Apache-2.0
#include "vbscript/entorno.h"

namespace vbscript {

int Entorno::messageBox(std::string_view texto, int botones, std::string_view titulo) {
    dialogos.push_back(std::string(texto) + "|" + std::to_string(botones) + "|" +
                       std::string(titulo));
    return 1;
}

std::string Entorno::inputBox(std::string_view texto, std::string_view,
                              std::string_view propuesto) {
    dialogos.emplace_back(texto);
    return std::string(propuesto);
}

} // namespace vbscript
