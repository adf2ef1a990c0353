// SPDX-License-Identifier: Apache-2.0
#include "mundo/guiones.h"

#include <algorithm>

namespace kv::mundo {
namespace {

std::string nombre(std::string direccion) {
    std::replace(direccion.begin(), direccion.end(), '.', '_');
    return "MW_" + direccion;
}

std::string escritor(const std::vector<ReglaDeEscrituras::Escritor*>& escritores) {
    std::string s = "corridas = corridas + 1\r\n";
    for (std::size_t k = 0; k < std::min<std::size_t>(escritores.size(), 4); ++k) {
        const auto& e = *escritores[k];
        s += "If corridas Mod " + std::to_string(17 + 6 * k) + " = 0 Then\r\n  " + contadorDe(k) +
             " = " + contadorDe(k) + " + 1\r\n  mw.writeMW \"" + nombre(e.direccion) + "\", " +
             std::to_string(e.base) + " + (" + contadorDe(k) + " \\ 2 And " +
             std::to_string(e.mascara) + ")\r\nEnd If\r\n";
    }
    return s;
}

std::string forzador(const std::vector<std::string>& forzables) {
    std::string s = "corridas = corridas + 1\r\n";
    if (!forzables.empty())
        s += "If corridas Mod 9 = 0 Then mw.READBLOQ \"" + nombre(forzables.front()) + "\"\r\n";
    return s + "If corridas Mod 301 = 0 Then mw.READBLOQ \"MW_7_7_7\"\r\n"
               "Label.Caption = \"corrida \" & corridas\r\n";
}

} // namespace

std::string contadorDe(std::size_t k) { return "q" + std::to_string(k); }

std::string guion(std::uint32_t cual, const std::vector<ReglaDeEscrituras::Escritor*>& escritores,
                  const std::vector<std::string>& forzables) {
    switch (cual % 14) {
    case 0:
        return "Function doble(x)\r\n  doble = x * 2\r\nEnd Function\r\ncorridas = corridas + 1\r\n"
               "y = doble(corridas)\r\n";
    case 1:
        return "vueltas = 0\r\nDo\r\n  vueltas = vueltas + 1\r\nLoop\r\n";
    case 2:
        return "Sub hondo()\r\n  hondo\r\nEnd Sub\r\nOn Error Resume Next\r\nhondo\r\n";
    case 3:
        return "x = 1 : y = 0\r\nz = x / y\r\n";
    case 4:
        return "If Then (\r\n";
    case 5:
        return "s = \"lleno\"\r\nDo\r\n  s = s & s\r\nLoop\r\n";
    case 6:
        return forzador(forzables).substr(0, 30);
    case 7:
        return {};
    case 8:
    case 9:
    case 10:
        return forzador(forzables);
    default:
        return escritor(escritores);
    }
}

} // namespace kv::mundo
