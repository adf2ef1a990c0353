// SPDX-License-Identifier: Apache-2.0
#include "view/lista.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace kv {
namespace {

struct Tramo {
    std::size_t desde;
    std::size_t largo;
    bool existe;
};

Tramo tramo(const std::string& textos, std::size_t columna) {
    std::size_t desde = 0;
    for (; columna > 0; --columna) {
        const auto fin = textos.find('\0', desde);
        if (fin == std::string::npos) return {columna, 0, false}; // `desde`: columns still missing
        desde = fin + 1;
    }
    const auto fin = textos.find('\0', desde);
    return {desde, (fin == std::string::npos ? textos.size() : fin) - desde, true};
}

} // namespace

std::uint32_t Lista::agregar(std::string_view texto, std::int64_t etiqueta) {
    const auto fila = static_cast<std::uint32_t>(filas_.size());
    filas_.emplace_back();
    filas_.back().etiqueta = static_cast<std::int32_t>(etiqueta);
    if (redactor_ == nullptr) {
        poner(fila, 0, texto);
    } else {
        anotar(fila);
    }
    if (buscable_) {
        const std::string suyo = redactor_ == nullptr ? this->texto(fila, 0) : std::string(texto);
        porTexto_.emplace(std::hash<std::string_view>{}(suyo), fila);
    }
    return fila;
}

void Lista::retirar(std::uint32_t fila) {
    if (fila >= filas_.size() || filas_[fila].retirada) return;
    filas_[fila].retirada = true;
    ++retiradas_;
    const auto [desde, hasta] =
        porTexto_.equal_range(std::hash<std::string_view>{}(texto(fila, 0)));
    const auto suya = std::find_if(desde, hasta, [&](const auto& i) { return i.second == fila; });
    if (suya != hasta) porTexto_.erase(suya);
    anotar(fila);
}

bool Lista::retirada(std::uint32_t fila) const {
    return fila < filas_.size() && filas_[fila].retirada;
}

void Lista::poner(std::uint32_t fila, std::size_t columna, std::string_view texto) {
    if (fila >= filas_.size()) return;
    std::string& textos = filas_[fila].textos;
    Tramo t = tramo(textos, columna);
    if (!t.existe) {
        textos.append(t.desde, '\0');
        t = {textos.size(), 0, true};
    }
    textos.replace(t.desde, t.largo, texto);
    std::replace(textos.begin() + t.desde, textos.begin() + t.desde + texto.size(), '\0', ' ');
    anotar(fila);
}

void Lista::agregarA(std::uint32_t fila, std::size_t columna, std::string_view mas) {
    poner(fila, columna, texto(fila, columna).append(mas));
}

std::string Lista::texto(std::uint32_t fila, std::size_t columna) const {
    if (fila >= filas_.size()) return {};
    if (redactor_ != nullptr) {
        if (auto suyo = redactor_->texto(fila, columna)) return std::move(*suyo);
    }
    const Tramo t = tramo(filas_[fila].textos, columna);
    return t.existe ? filas_[fila].textos.substr(t.desde, t.largo) : std::string();
}

std::int64_t Lista::etiqueta(std::uint32_t fila) const {
    return fila < filas_.size() ? filas_[fila].etiqueta : -1;
}

void Lista::tildar(std::uint32_t fila, bool tildada) {
    if (fila >= filas_.size() || filas_[fila].tildada == tildada) return;
    filas_[fila].tildada = tildada;
    anotar(fila);
}

bool Lista::tildada(std::uint32_t fila) const {
    return fila < filas_.size() && filas_[fila].tildada;
}

std::int64_t Lista::buscar(std::string_view texto_) const {
    const auto [desde, hasta] = porTexto_.equal_range(std::hash<std::string_view>{}(texto_));
    std::int64_t primera = -1;
    for (auto i = desde; i != hasta; ++i) {
        if ((primera < 0 || i->second < primera) && texto(i->second, 0) == texto_)
            primera = i->second;
    }
    return primera;
}

std::vector<std::uint32_t> Lista::cambiadas() {
    for (const std::uint32_t f : cambiadas_)
        filas_[f].anotada = false;
    return std::exchange(cambiadas_, {});
}

void Lista::seguirCambios(bool seguir) {
    sigue_ = seguir;
    if (!seguir) (void)cambiadas();
}

void Lista::vigilar(std::uint32_t fila) {
    if (fila < filas_.size()) filas_[fila].vigilada = true;
}

void Lista::anotar(std::uint32_t fila) {
    if (filas_[fila].vigilada) {
        for (OyenteDeFilas* oyente : oyentes_)
            oyente->alCambiarFila(fila);
    }
    if (!sigue_ || filas_[fila].anotada) return;
    filas_[fila].anotada = true;
    cambiadas_.push_back(fila);
}

} // namespace kv
