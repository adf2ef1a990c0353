// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/salida.h"

#include "ClienteKV2200/hora.h"
#include "plant/valor_y_estado.h"
#include "server/mensajes.h"
#include "text/json.h"
#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace kv::cliente {
namespace {

std::string estadoDe(const Variable& v) {
    const auto codigo = numeroDeTexto(v.estado);
    const std::string_view texto = codigo ? textoEstado(*codigo) : "";
    return texto.empty() ? utf8DesdeWindows1252(v.estado) : std::string(texto);
}

/// For a terminal or a line of text: nothing that steers it.
std::string visible(std::string_view bytes) {
    std::string texto = utf8DesdeWindows1252(bytes);
    std::replace_if(
        texto.begin(), texto.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return texto;
}

void camposDe(const Variable& v, ObjetoJson& o) {
    o.texto("direccion", utf8DesdeWindows1252(v.direccion));
    if (v.valor.empty()) return;
    const auto numero = numeroDeTexto(v.valor);
    o.crudo("valor", numero ? enJson(*numero) : enJson(visible(v.valor)));
    o.texto("estado", estadoDe(v));
}

} // namespace

std::string valorYEstado(const Variable& v) {
    return visible(v.valor) + " " + visible(estadoDe(v));
}

std::string lineaDe(const Variable& v, bool json, const std::string& hora) {
    if (!json)
        return (hora.empty() ? "" : hora + " ") + visible(v.direccion) + " " + valorYEstado(v);
    std::string linea;
    ObjetoJson o(linea);
    if (!hora.empty()) o.texto("hora", hora);
    camposDe(v, o);
    o.fin();
    return linea;
}

std::string lineaDeError(const std::string& texto, bool json, const Variable& v) {
    if (!json)
        return "ClienteKV2200: " + (v.direccion.empty() ? "" : visible(v.direccion) + ": ") + texto;
    std::string linea;
    ObjetoJson o(linea);
    o.texto("hora", horaIso()).texto("error", texto);
    if (!v.direccion.empty()) camposDe(v, o);
    o.fin();
    return linea;
}

std::vector<std::size_t> Tabla::agregar(const std::vector<Variable>& variables,
                                        const std::string& hora) {
    std::vector<std::size_t> cambiadas;
    for (const Variable& v : variables) {
        siguiente_ = v.direccion == ultima_ ? siguiente_ + 1 : 0;
        ultima_ = v.direccion;
        const auto [i, nueva] = numeros_.try_emplace({v.direccion, siguiente_}, filas_.size());
        if (nueva) filas_.push_back({v, hora, siguiente_});
        Fila& fila = filas_[i->second];
        if (!nueva && fila.variable.valor == v.valor && fila.variable.estado == v.estado) continue;
        fila.variable = v;
        fila.hora = hora;
        cambiadas.push_back(i->second);
    }
    // Only a full envelope is followed by another of the same block.
    if (variables.size() < kRegistrosPorSobre) ultima_.clear();
    return cambiadas;
}

void Tabla::dibujar(std::ostream& salida, std::size_t lineas, const std::string& aviso) const {
    const auto linea = [&salida](const auto& a, const auto& b, const auto& c, const auto& d) {
        salida << std::left << std::setw(18) << a << std::right << std::setw(10) << b << "  "
               << std::left << std::setw(8) << c << d << "\033[K\n";
    };
    salida << "\033[H";
    if (!aviso.empty()) {
        salida << "\033[7m" << aviso << "\033[0m\033[K\n";
        --lineas;
    }
    linea("Direccion", "Valor", "Estado", "Hora");
    const std::size_t caben = lineas > 3 ? lineas - 3 : 1;
    for (std::size_t i = 0; i < std::min(caben, filas_.size()); ++i) {
        const Fila& f = filas_[i];
        const std::string lugar = f.lugar == 0 ? "" : " [" + std::to_string(f.lugar) + "]";
        linea(visible(f.variable.direccion) + lugar, visible(f.variable.valor),
              visible(estadoDe(f.variable)), f.hora);
    }
    if (filas_.size() > caben)
        salida << "... y " << filas_.size() - caben << " variables más\033[K\n";
    salida << "\033[J" << std::flush;
}

} // namespace kv::cliente
