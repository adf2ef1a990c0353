// SPDX-License-Identifier: Apache-2.0
#include "text/parecido.h"

#include "text/texto.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kv {
namespace {

constexpr std::size_t kLargoMaximo = 100; // no name is longer, and the time grows with the square

std::size_t distancia(std::string_view a, std::string_view b) {
    std::vector<std::size_t> antes;
    std::vector<std::size_t> fila(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        fila[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> nueva(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t cambia = a[i - 1] == b[j - 1] ? 0 : 1;
            nueva[j] = std::min({fila[j] + 1, nueva[j - 1] + 1, fila[j - 1] + cambia});
            const bool cruzadas = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (cruzadas) nueva[j] = std::min(nueva[j], antes[j - 2] + 1);
        }
        antes = std::move(fila);
        fila = std::move(nueva);
    }
    return fila[b.size()];
}

} // namespace

std::string_view masParecido(std::string_view texto, std::span<const std::string_view> nombres) {
    if (texto.size() > kLargoMaximo) return {};
    const std::string dado = minusculas(texto);
    std::size_t cerca = 2 + dado.size() / 4; // one more than may be
    std::string_view mejor;
    for (const std::string_view nombre : nombres) {
        const std::size_t d = distancia(dado, minusculas(nombre));
        if (d >= cerca) continue;
        cerca = d;
        mejor = nombre;
    }
    return mejor;
}

} // namespace kv
