// SPDX-License-Identifier: Apache-2.0
#include "corrida.h"

#include "script/valor_visible.h"
#include "text/texto.h"

#include <iostream>

namespace {
constexpr std::size_t erroresDichos = 100;
constexpr std::size_t largoDeValor = 1000;
} // namespace

std::string textoDe(const std::string& archivo, const vbscript::ScriptError& e) {
    const auto lugar = [](int linea, int columna) {
        return "(" + std::to_string(linea) + ", " + std::to_string(columna) + ")";
    };
    std::string que = archivo + lugar(e.line, e.column) + ": " + e.description;
    if (e.ranText.empty()) return que;
    return que + ", at " + lugar(e.ranLine, e.ranColumn) +
           " of the text that is run there: " + e.ranText;
}

Corrida::Corrida(vbscript::Engine& motor, Papel& papel, std::string archivo, const Valores* valores)
    : motor_(motor), papel_(papel), archivo_(std::move(archivo)), valores_(valores) {
    for (const auto& v : motor_.variables())
        antes_[kv::minusculas(v.name)] = mostrar(v.value);
    if (valores_ == nullptr) return;
    for (const std::string& nombre : valores_->nombres)
        ranuras_.push_back(motor_.global(nombre));
}

void Corrida::preparar(std::size_t fila, std::uint64_t vuelta, std::size_t filas,
                       std::uint64_t veces) {
    std::string titulo;
    if (filas > 1) titulo = "fila " + std::to_string(fila + 1);
    if (veces > 1) titulo += (titulo.empty() ? "vez " : ", vez ") + std::to_string(vuelta + 1);
    papel_.titular(std::move(titulo));
    if (valores_ == nullptr) return;
    for (const Valores::Cambio& c : valores_->filas[fila]) {
        const auto ranura = ranuras_[c.nombre];
        if (!ranura) continue;
        motor_.setNumber(*ranura, c.valor);
        antes_[kv::minusculas(valores_->nombres[c.nombre])] = mostrar(motor_.value(*ranura));
    }
}

bool Corrida::una(const std::string& texto) {
    ++corridas_;
    if (motor_.addCode(texto)) return true;
    ++fallas_;
    const vbscript::ScriptError& e = motor_.error();
    const std::string que = textoDe(archivo_, e);
    if (dichos_.size() < erroresDichos && dichos_.insert(que).second) {
        std::cout.flush();
        std::cerr << que << '\n';
    }
    return !e.compileTime && !e.budget;
}

std::string Corrida::mostrar(const vbscript::Value& v) const {
    return kv::valorVisible(motor_, v, largoDeValor);
}

std::string Corrida::cambios() const {
    std::string salida;
    for (const auto& v : motor_.variables()) {
        const auto antes = antes_.find(kv::minusculas(v.name));
        const std::string ahora = mostrar(v.value);
        if (ahora == (antes == antes_.end() ? "Empty" : antes->second)) continue;
        salida += "  " + v.name + " = " + ahora + "\n";
    }
    return salida.empty() ? "No cambió ninguna variable\n" : "Cambiaron:\n" + salida;
}
