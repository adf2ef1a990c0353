// SPDX-License-Identifier: Apache-2.0
#include "text/json.h"

#include "text/numeros.h"
#include "text/utf8.h"
#include "text/windows1252.h"

#include <algorithm>
#include <cmath>

namespace kv {

std::string enJson(std::string_view texto) {
    std::string json = "\"";
    for (std::size_t i = 0; i < texto.size();) {
        const auto c = static_cast<unsigned char>(texto[i]);
        const std::size_t largo = leerUtf8(texto, i).largo;
        if (c == '"' || c == '\\') json += '\\';
        if (largo == 0) {
            json += utf8DesdeWindows1252(texto.substr(i, 1));
        } else if (c >= 0x20) {
            json += texto.substr(i, largo);
        } else {
            constexpr std::string_view kCifras = "0123456789abcdef";
            json += "\\u00";
            json += kCifras[c >> 4U];
            json += kCifras[c & 15U];
        }
        i += std::max<std::size_t>(largo, 1);
    }
    return json + "\"";
}

std::string enJson(double numero) { return std::isfinite(numero) ? textoDeNumero(numero) : "null"; }

std::string& ObjetoJson::valor(std::string_view nombre) {
    if (a_.back() != '{') a_ += ',';
    a_ += '"';
    a_ += nombre;
    return a_ += "\":";
}

std::string& ListaJson::elemento() {
    if (a_.back() != '[') a_ += ',';
    return a_;
}

} // namespace kv
