// SPDX-License-Identifier: Apache-2.0
#include "window/trends/registro.h"

#include "text/numeros.h"
#include "view/columnas.h"

#include <algorithm>

namespace kv {

std::optional<Muestra> Serie::en(std::int64_t ms) const {
    const auto despues =
        std::upper_bound(muestras.begin(), muestras.end(), ms,
                         [](std::int64_t cuando, const Muestra& m) { return cuando < m.ms; });
    if (despues == muestras.begin()) return std::nullopt;
    return *(despues - 1);
}

bool RegistroDeTendencias::agregar(std::uint32_t fila, std::int64_t ahoraMs) {
    const bool esta =
        std::any_of(series_.begin(), series_.end(), [&](const Serie& s) { return s.fila == fila; });
    if (esta) return true;
    if (series_.size() >= kSeries || fila >= variables_.filas()) return false;
    series_.push_back({std::string(variables_.texto(fila, de_variables::kDireccion)), fila, {}});
    mirar(series_.back(), ahoraMs);
    return true;
}

void RegistroDeTendencias::quitar(std::size_t serie) {
    if (serie < series_.size()) series_.erase(series_.begin() + static_cast<std::ptrdiff_t>(serie));
}

void RegistroDeTendencias::mirar(std::int64_t ahoraMs) {
    for (Serie& s : series_)
        mirar(s, ahoraMs);
}

void RegistroDeTendencias::mirar(Serie& serie, std::int64_t ahoraMs) const {
    // The configuration may have been read anew: the same register is in another row, or in none.
    if (variables_.retirada(serie.fila)) {
        const std::int64_t otra = variables_.buscar(serie.direccion);
        if (otra >= 0) serie.fila = static_cast<std::uint32_t>(otra);
    }
    const bool ok = !variables_.retirada(serie.fila) && variables_.tildada(serie.fila) &&
                    variables_.texto(serie.fila, de_variables::kEstado) == "OK";
    const double valor =
        numeroDeTexto(variables_.texto(serie.fila, de_variables::kValor)).value_or(0);
    std::deque<Muestra>& m = serie.muestras;
    if (m.empty() || m.back().valor != valor || m.back().ok != ok)
        m.push_back({ahoraMs, valor, ok});
    // The last one from before stays: it says how things were when what is kept begins.
    while (m.size() > kMuestras || (m.size() > 1 && m[1].ms < ahoraMs - kVidaMs))
        m.pop_front();
}

} // namespace kv
