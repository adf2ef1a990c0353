// SPDX-License-Identifier: Apache-2.0
#include "config/problema.h"

#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>
#include <cstdint>

namespace kv {
namespace {

/// A fault without its line and those that it names.
std::string sinLinea(const Problema& p) {
    constexpr std::string_view kLinea = "la línea ";
    std::string texto = p.archivo + ": " + p.que;
    for (auto n = texto.find(kLinea); n != std::string::npos; n = texto.find(kLinea, n)) {
        n += kLinea.size();
        texto.erase(n, texto.find_first_not_of("0123456789", n) - n);
    }
    return texto;
}

} // namespace

void Problemas::agregar(std::string_view archivo, std::size_t linea, std::string que,
                        std::string consecuencia, std::string_view campo) {
    if (lista_.size() == kMaximo) {
        ++demas_;
        return;
    }
    lista_.push_back({std::string(archivo), linea, std::move(que), std::move(consecuencia), campo});
}

void ProblemasConocidos::conocer(const Problemas& problemas, const Problemas& ignoradas) {
    veces_.clear();
    for (const auto* todos : {&problemas, &ignoradas}) {
        for (const Problema& p : todos->lista())
            ++veces_[sinLinea(p)];
    }
}

std::vector<Problema> ProblemasConocidos::nuevos(const Problemas& problemas) const {
    auto quedan = veces_;
    std::vector<Problema> nuevos;
    for (const Problema& p : problemas.lista()) {
        std::size_t& queda = quedan[sinLinea(p)];
        if (queda > 0)
            --queda;
        else
            nuevos.push_back(p);
    }
    return nuevos;
}

void Problemas::agregar(const Problemas& otros) {
    for (const Problema& p : otros.lista_)
        agregar(p.archivo, p.linea, p.que, p.consecuencia);
    demas_ += otros.demas_;
}

std::string textoDeProblema(const Problema& problema) {
    const std::string linea = problema.linea == 0 ? "" : ":" + std::to_string(problema.linea);
    return rutaLegible(problema.archivo) + linea + ": " + problema.que + "; " +
           problema.consecuencia;
}

std::string conComa(double numero) {
    std::string texto = textoDeNumero(numero);
    std::replace(texto.begin(), texto.end(), '.', ',');
    return texto;
}

std::string rutaLegible(std::string_view ruta) {
    std::string texto(ruta);
    std::replace(texto.begin(), texto.end(), '\\', '/');
    return texto;
}

std::string citar(std::string_view bytes) {
    constexpr std::size_t kVisibles = 60;
    std::string visible(bytes.substr(0, kVisibles));
    for (char& c : visible) {
        const auto b = static_cast<std::uint8_t>(c);
        if (b < 0x20 || b == 0x7F) c = '?';
    }
    return "\"" + utf8DesdeWindows1252(visible) + (bytes.size() > kVisibles ? "…\"" : "\"");
}

std::string citarUtf8(std::string_view utf8) { return citar(windows1252DesdeUtf8(utf8)); }

} // namespace kv
