// SPDX-License-Identifier: Apache-2.0
#include "config/csv.h"

#include "config/desconocidas.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {

std::string celdaCsv(std::string_view texto) {
    if (texto.find_first_of("\";\r\n\t,") == std::string_view::npos && recortar(texto) == texto)
        return std::string(texto);
    std::string celda = "\"";
    for (const char c : texto)
        celda += c == '"' ? std::string("\"\"") : std::string(1, c);
    return celda + '"';
}

std::string_view TablaCsv::Celda::dice() const {
    return citada ? std::string_view(texto) : recortar(texto);
}

TablaCsv::TablaCsv(std::string_view contenido, const std::string& ruta,
                   std::span<const std::string_view> columnas, std::string_view consecuencia,
                   Problemas& problemas)
    : resto_(contenido), ruta_(ruta), columnas_(columnas), consecuencia_(consecuencia),
      problemas_(problemas), donde_(columnas.size(), kSin), esUtf16_(empiezaComoUtf16(contenido)) {
    if (resto_.starts_with(kMarcaUtf8)) resto_.remove_prefix(kMarcaUtf8.size());
    if (!pareceUtf8(resto_)) resto_ = enUtf8_ = utf8DesdeWindows1252(resto_);
}

bool TablaCsv::cabecera(std::initializer_list<std::size_t> obligatorias) {
    constexpr std::string_view kSeparadores = ";,\t";
    if (esUtf16_) {
        problemas_.agregar(ruta_, 1, "el archivo está guardado como UTF-16",
                           std::string(consecuencia_) + ": debe ser UTF-8 o Windows-1252");
        return false;
    }
    const std::string_view cabeza = resto_.substr(0, resto_.find('\n'));
    const auto cuantos = [cabeza](char s) { return std::count(cabeza.begin(), cabeza.end(), s); };
    separador_ = *std::max_element(kSeparadores.begin(), kSeparadores.end(),
                                   [&](char a, char b) { return cuantos(a) < cuantos(b); });
    quitarFila();
    fila_ = 1;
    for (std::size_t i = 0; i < celdas_.size(); ++i) {
        const std::string_view nombre = celdas_[i].dice();
        const auto c = std::find_if(columnas_.begin(), columnas_.end(),
                                    [&](auto n) { return igualSinCaja(n, nombre); });
        if (c != columnas_.end())
            donde_[static_cast<std::size_t>(c - columnas_.begin())] = i;
        else if (!nombre.empty())
            mal(citarUtf8(nombre) + " no es una columna conocida" + talVez(nombre, columnas_));
    }
    for (const std::size_t c : obligatorias) {
        if (tiene(c)) continue;
        mal("falta la columna " + std::string(columnas_[c]));
        return false;
    }
    return true;
}

bool TablaCsv::siguiente() {
    while (!resto_.empty()) {
        ++fila_;
        quitarFila();
        if (!std::all_of(celdas_.begin(), celdas_.end(),
                         [](const Celda& c) { return c.dice().empty(); }))
            return true;
    }
    return false;
}

bool TablaCsv::cortada() const {
    return !termina_ && std::any_of(donde_.begin(), donde_.end(), [this](std::size_t lugar) {
        return lugar != kSin && lugar >= celdas_.size();
    });
}

/// Takes the cells of the next row off what is left. A quoted cell may hold separators and line
/// ends.
void TablaCsv::quitarFila() {
    celdas_.assign(1, {});
    bool entreComillas = false;
    bool empezada = false; // the cell holds more than blanks, or a quotation
    bool citada = false;
    bool sobra = false; // beyond the cells of a row
    std::size_t i = 0;
    const auto agregar = [&](char c) {
        if (!sobra) celdas_.back().texto += c;
    };
    for (; i < resto_.size(); ++i) {
        const char c = resto_[i];
        if (entreComillas) {
            const bool doble = c == '"' && i + 1 < resto_.size() && resto_[i + 1] == '"';
            if (doble) ++i;
            entreComillas = c != '"' || doble;
            if (entreComillas) agregar(c);
        } else if (c == '"' && !empezada) {
            entreComillas = empezada = citada = true;
            if (!sobra) celdas_.back() = {{}, true};
        } else if (c == separador_) {
            sobra = celdas_.size() == kMaximoDeCeldas;
            if (!sobra) celdas_.emplace_back();
            empezada = citada = false;
        } else if (c == '\n') {
            break;
        } else if (c != '\r' && !(citada && c == ' ')) {
            agregar(c);
            empezada = empezada || (c != ' ' && c != '\t');
        }
    }
    termina_ = i < resto_.size();
    resto_.remove_prefix(std::min(i + 1, resto_.size()));
}

std::string TablaCsv::texto(std::size_t columna) {
    const std::size_t i = donde_[columna];
    if (i >= celdas_.size()) return {};
    std::string t(celdas_[i].dice());
    if (t.find_first_of("\r\n") != std::string::npos) mal(columna, "tiene más de un renglón");
    return t;
}

void TablaCsv::mal(std::string que) {
    problemas_.agregar(ruta_, fila_, std::move(que), std::string(consecuencia_));
}

void TablaCsv::mal(std::size_t columna, const std::string& que) {
    mal("columna " + std::string(columnas_[columna]) + ": " + que);
}

} // namespace kv
