// SPDX-License-Identifier: Apache-2.0
#include "window/trends/registro.h"

#include "text/numeros.h"
#include "view/columnas.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::int64_t kMsPorMinuto = 60'000;
constexpr std::size_t kSinApretar = 8'192; ///< fewer samples than that are not worth a look
constexpr std::size_t kDeUnPixel = 5;

/// How long a pixel lasts in the finest drawing in which a sample of that age can still be seen.
std::int64_t anchoDePixel(std::int64_t edadMs) {
    std::int64_t largoMs = RegistroDeTendencias::kVidaMs;
    for (auto m = kMinutosDeTendencias.rbegin(); m != kMinutosDeTendencias.rend(); ++m) {
        if (edadMs <= *m * kMsPorMinuto) largoMs = *m * kMsPorMinuto;
    }
    return largoMs / RegistroDeTendencias::kPixeles;
}

/// The samples of one pixel, as many as are needed to draw it as all of them would.
template <class I>
void dejarLoQueSeVe(I desde, I hasta, std::deque<Muestra>& donde) {
    if (static_cast<std::size_t>(hasta - desde) <= kDeUnPixel) {
        donde.insert(donde.end(), desde, hasta);
        return;
    }
    const auto menor = [](const Muestra& a, const Muestra& b) { return a.valor < b.valor; };
    std::array quedan{
        desde, std::min_element(desde, hasta, menor), std::max_element(desde, hasta, menor),
        std::find_if(desde, hasta, [](const Muestra& m) { return !m.ok; }), hasta - 1};
    std::sort(quedan.begin(), quedan.end());
    const auto fin = std::unique(quedan.begin(), quedan.end());
    for (auto i = quedan.begin(); i != fin && *i != hasta; ++i)
        donde.push_back(**i);
}

} // namespace

std::optional<Muestra> Serie::en(std::int64_t ms) const {
    const auto despues =
        std::upper_bound(muestras.begin(), muestras.end(), ms,
                         [](std::int64_t cuando, const Muestra& m) { return cuando < m.ms; });
    if (despues == muestras.begin()) return std::nullopt;
    return *(despues - 1);
}

RegistroDeTendencias::RegistroDeTendencias(Lista& variables, Reloj reloj)
    : variables_(variables), reloj_(std::move(reloj)) {
    variables_.avisarA(this);
}

RegistroDeTendencias::~RegistroDeTendencias() { variables_.dejarDeAvisarA(this); }

bool RegistroDeTendencias::agregar(std::uint32_t fila) {
    const bool esta =
        std::any_of(series_.begin(), series_.end(), [&](const Serie& s) { return s.fila == fila; });
    if (esta) return true;
    if (series_.size() >= kSeries || fila >= variables_.filas()) return false;
    series_.push_back({std::string(variables_.texto(fila, de_variables::kDireccion)), fila, {}});
    variables_.vigilar(fila);
    mirar(series_.back());
    return true;
}

void RegistroDeTendencias::quitar(std::size_t serie) {
    if (serie < series_.size()) series_.erase(series_.begin() + static_cast<std::ptrdiff_t>(serie));
}

void RegistroDeTendencias::alCambiarFila(std::uint32_t fila) {
    for (Serie& s : series_) {
        if (s.fila == fila) mirar(s);
    }
}

void RegistroDeTendencias::mirar() {
    const std::int64_t ahora = reloj_();
    for (Serie& s : series_) {
        // The configuration may have been read anew: the same register is in another row, or in no
        // row.
        const std::int64_t otra =
            variables_.retirada(s.fila) ? variables_.buscar(s.direccion) : std::int64_t{-1};
        if (otra >= 0) {
            s.fila = static_cast<std::uint32_t>(otra);
            variables_.vigilar(s.fila);
        }
        mirar(s);
        // The last sample from before stays: it says what the value was where the ones that are
        // kept begin.
        while (s.muestras.size() > 1 && s.muestras[1].ms < ahora - kVidaMs)
            s.muestras.pop_front();
    }
}

void RegistroDeTendencias::mirar(Serie& serie) {
    const bool ok = !variables_.retirada(serie.fila) && variables_.tildada(serie.fila) &&
                    variables_.texto(serie.fila, de_variables::kEstado) == "OK";
    const double valor =
        numeroDeTexto(variables_.texto(serie.fila, de_variables::kValor)).value_or(0);
    anotar(serie, {reloj_(), valor, ok});
}

/// Value and state are written one after the other: what stands within one instant is the last.
void RegistroDeTendencias::anotar(Serie& serie, const Muestra& muestra) const {
    std::deque<Muestra>& m = serie.muestras;
    const auto igual = [](const Muestra& a, const Muestra& b) {
        return a.valor == b.valor && a.ok == b.ok;
    };
    if (!m.empty() && igual(m.back(), muestra)) return;
    if (!m.empty() && m.back().ms == muestra.ms) m.pop_back();
    if (!m.empty() && igual(m.back(), muestra)) return;
    m.push_back(muestra);
    if (m.size() >= std::max(serie.hastaApretar, kSinApretar)) apretar(serie, muestra.ms);
}

void RegistroDeTendencias::apretar(Serie& serie, std::int64_t ahoraMs) const {
    std::deque<Muestra> quedan;
    const std::deque<Muestra>& todas = serie.muestras;
    for (auto desde = todas.begin(); desde != todas.end();) {
        const std::int64_t ancho = anchoDePixel(ahoraMs - desde->ms);
        const auto hasta = std::find_if(desde, todas.end(), [&](const Muestra& m) {
            return m.ms / ancho != desde->ms / ancho;
        });
        dejarLoQueSeVe(desde, hasta, quedan);
        desde = hasta;
    }
    serie.muestras = std::move(quedan);
    serie.hastaApretar = serie.muestras.size() + serie.muestras.size() / 2;
}

} // namespace kv
