// SPDX-License-Identifier: Apache-2.0
#include "perfil.h"

#include "text/texto.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace {
constexpr std::size_t mostradas = 30;
constexpr std::size_t anchoDeTexto = 70; // bytes of a line that are shown
} // namespace

void Perfil::cerrar() {
    const auto ahora = Reloj::now();
    if (actual_ > 0) lineas_[actual_].ns += (ahora - desde_).count();
    desde_ = ahora;
}

void Perfil::at(int linea) {
    const auto n = static_cast<std::size_t>(std::max(linea, 0));
    cerrar();
    if (n >= lineas_.size()) lineas_.resize(n + 1);
    actual_ = n;
    ++lineas_[n].veces;
}

void Perfil::terminar() {
    cerrar();
    actual_ = 0;
}

std::string Perfil::informe(const std::string& guion) const {
    std::vector<std::size_t> orden;
    std::int64_t todo = 0;
    for (std::size_t n = 1; n < lineas_.size(); ++n) {
        if (lineas_[n].veces > 0) orden.push_back(n);
        todo += lineas_[n].ns;
    }
    std::stable_sort(orden.begin(), orden.end(), [this](std::size_t a, std::size_t b) {
        return lineas_[a].ns > lineas_[b].ns;
    });
    const auto textos = kv::partir(guion, '\n');
    std::string salida = "Perfil: línea, parte del tiempo, milisegundos, pasos\n";
    for (std::size_t k = 0; k < std::min(orden.size(), mostradas); ++k) {
        const std::size_t n = orden[k];
        const Linea& l = lineas_[n];
        char numeros[120];
        std::snprintf(numeros, sizeof numeros, "%6zu %5.1f %% %12.3f %10llu  ", n,
                      todo > 0 ? 100.0 * static_cast<double>(l.ns) / static_cast<double>(todo) : 0,
                      static_cast<double>(l.ns) / 1e6, static_cast<unsigned long long>(l.veces));
        salida += numeros;
        const auto texto = n <= textos.size() ? kv::recortar(textos[n - 1]) : std::string_view();
        salida += std::string(kv::comienzo(texto, anchoDeTexto)) + "\n";
    }
    if (orden.size() > mostradas)
        salida += "... y " + std::to_string(orden.size() - mostradas) + " líneas más\n";
    return salida;
}
