// SPDX-License-Identifier: Apache-2.0
#include "server/mensajes.h"

#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {

bool quitarPalabra(std::string& texto, std::string_view palabra) {
    const std::string minuscula = minusculas(texto);
    const std::string buscada = minusculas(palabra);
    auto i = minuscula.find(buscada);
    if (i == std::string::npos) return false;
    std::string queda;
    std::size_t desde = 0;
    for (; i != std::string::npos; i = minuscula.find(buscada, desde)) {
        queda.append(texto, desde, i - desde);
        desde = i + buscada.size();
    }
    queda.append(texto, desde);
    texto = std::move(queda);
    return true;
}

std::string_view direccionDeLectura(std::string_view contenido) {
    if (contenido.ends_with(';')) contenido.remove_suffix(1);
    return contenido;
}

std::optional<std::pair<std::string_view, std::string_view>> dosCampos(std::string_view contenido) {
    const auto i = contenido.find(';');
    if (i == std::string_view::npos) return std::nullopt;
    const std::string_view segundo = contenido.substr(i + 1);
    return std::pair{contenido.substr(0, i), segundo.substr(0, segundo.find(';'))};
}

bool esSoloKeepAlive(std::string_view llegada) {
    for (llegada = recortar(llegada); !llegada.empty(); llegada = recortar(llegada)) {
        const auto tag = {kKeepAliveDelCliente, kKeepAliveDelDriver};
        const auto* const t = std::find_if(tag.begin(), tag.end(), [llegada](auto palabra) {
            return igualSinCaja(llegada.substr(0, palabra.size()), palabra);
        });
        if (t == tag.end()) return false;
        llegada.remove_prefix(t->size());
    }
    return true;
}

void agregarAlCable(std::string& destino, std::string_view texto) {
    const bool ascii = std::all_of(texto.begin(), texto.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii)
        destino += texto;
    else
        destino += windows1252DesdeUtf8(texto);
}

void agregarRegistro(std::string& destino, std::string_view direccion, double valor, double estado,
                     const Separadores& separadores) {
    agregarAlCable(destino, direccion);
    destino += separadores.campo;
    agregarNumero(destino, valor);
    destino += separadores.campo;
    agregarNumero(destino, estado);
    destino += separadores.campo;
}

void abrirSobre(std::string& destino, const Separadores& separadores) {
    destino += kAbreSobre;
    destino += separadores.sobre;
}

void cerrarSobre(std::string& destino, const Separadores& separadores) {
    destino += separadores.sobre;
    destino += kCierraSobre;
}

} // namespace kv
