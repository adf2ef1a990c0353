// SPDX-License-Identifier: Apache-2.0
#include "config/ini.h"

#include "text/texto.h"

#include <algorithm>
#include <cstring>

namespace kv {
namespace {

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF"; // what some editors put before the text

constexpr bool esBlanco(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string_view sinBlancos(std::string_view t) {
    while (!t.empty() && esBlanco(t.front()))
        t.remove_prefix(1);
    while (!t.empty() && esBlanco(t.back()))
        t.remove_suffix(1);
    return t;
}

std::string_view valorLimpio(std::string_view t) {
    t = sinBlancos(t);
    if (t.size() >= 2 && t.front() == '"' && t.back() == '"') t = t.substr(1, t.size() - 2);
    return t.substr(0, kMaximoDeValor);
}

} // namespace

LectorIni::LectorIni(std::string_view contenido, std::size_t desde, std::size_t linea)
    : contenido_(contenido) {
    linea_.fin = desde == 0 && contenido.starts_with(kMarcaUtf8) ? kMarcaUtf8.size() : desde;
    linea_.numero = linea;
}

bool LectorIni::siguiente() {
    LineaIni& l = linea_;
    if (l.fin >= contenido_.size()) return false;
    l.inicio = l.fin;
    const char* const base = contenido_.data();
    const void* salto = std::memchr(base + l.inicio, '\n', contenido_.size() - l.inicio);
    const std::size_t corte = salto
                                  ? static_cast<std::size_t>(static_cast<const char*>(salto) - base)
                                  : contenido_.size();
    l.fin = salto ? corte + 1 : corte;
    l.finDeTexto = corte > l.inicio && salto && base[corte - 1] == '\r' ? corte - 1 : corte;
    ++l.numero;
    l.clase = LineaIni::Clase::Otra;
    const std::string_view texto = sinBlancos(contenido_.substr(l.inicio, l.finDeTexto - l.inicio));
    if (texto.empty() || texto.front() == ';') return true;
    if (texto.front() == '[') {
        l.clase = LineaIni::Clase::Seccion;
        l.nombre = sinBlancos(texto.substr(1, texto.find(']') - 1)); // without "]": to the end
        return true;
    }
    const auto igual = texto.find('=');
    if (igual == std::string_view::npos) return true;
    l.clase = LineaIni::Clase::Clave;
    l.nombre = sinBlancos(texto.substr(0, igual));
    const std::string_view resto = texto.substr(igual + 1);
    l.valor = valorLimpio(resto);
    l.inicioDeValor = static_cast<std::size_t>(resto.data() - base);
    while (l.inicioDeValor < l.finDeTexto && esBlanco(base[l.inicioDeValor]))
        ++l.inicioDeValor;
    return true;
}

Ini::Ini(std::string contenido) : contenido_(std::move(contenido)) {
    std::uint32_t seccion = kNinguna;
    LectorIni lector(contenido_);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        const bool esSeccion = l.clase == LineaIni::Clase::Seccion;
        // Keys before the first section are nobody's.
        if (!esSeccion && (l.clase != LineaIni::Clase::Clave || seccion == kNinguna)) continue;
        const auto linea = static_cast<std::uint32_t>(l.numero);
        entradas_.push_back({esSeccion ? kNinguna : seccion,
                             static_cast<std::uint32_t>(l.nombre.data() - contenido_.data()),
                             static_cast<std::uint32_t>(l.nombre.size()), linea});
        if (esSeccion) seccion = linea;
    }
    // Of equal names the first stands first, and is the one that is found: a section that is
    // repeated has another number, which nobody looks for.
    std::ranges::sort(entradas_, [this](const Entrada& a, const Entrada& b) {
        if (a.seccion != b.seccion) return a.seccion < b.seccion;
        const int orden = compararSinCaja(nombreDe(a), nombreDe(b));
        return orden != 0 ? orden < 0 : a.inicio < b.inicio;
    });
}

const Ini::Entrada* Ini::encontrar(std::uint32_t seccion, std::string_view nombre) const {
    const auto lugar = std::ranges::partition_point(entradas_, [&](const Entrada& e) {
        return e.seccion != seccion ? e.seccion < seccion
                                    : compararSinCaja(nombreDe(e), nombre) < 0;
    });
    const bool esta = lugar != entradas_.end() && lugar->seccion == seccion &&
                      igualSinCaja(nombreDe(*lugar), nombre);
    return esta ? &*lugar : nullptr;
}

std::optional<Ini::Hallazgo> Ini::buscar(std::string_view seccion, std::string_view clave) const {
    const Entrada* s = encontrar(kNinguna, seccion);
    const Entrada* e = s == nullptr ? nullptr : encontrar(s->linea, clave);
    if (e == nullptr) return std::nullopt;
    LectorIni lector(contenido_, e->inicio, e->linea - 1);
    lector.siguiente();
    return Hallazgo{lector.linea().valor, e->linea};
}

namespace {

struct Sitio {
    bool hayClave = false;
    bool haySeccion = false;
    std::size_t desde = 0; ///< of the text to replace, or where a new line goes
    std::size_t hasta = 0;
};

Sitio buscarSitio(std::string_view contenido, std::string_view seccion, std::string_view clave) {
    Sitio sitio;
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Seccion) {
            if (sitio.haySeccion) return sitio;
            sitio.haySeccion = igualSinCaja(l.nombre, seccion);
        }
        if (!sitio.haySeccion) continue;
        if (l.clase == LineaIni::Clase::Clave && igualSinCaja(l.nombre, clave))
            return {true, true, l.inicioDeValor, l.finDeTexto};
        // Blank lines at the end of a section stay between it and the next one.
        if (!sinBlancos(contenido.substr(l.inicio, l.finDeTexto - l.inicio)).empty())
            sitio.desde = sitio.hasta = l.fin;
    }
    if (!sitio.haySeccion) sitio.desde = sitio.hasta = contenido.size();
    return sitio;
}

std::string_view finDeLineaDe(std::string_view contenido) {
    const auto salto = contenido.find('\n');
    const bool solo =
        salto != std::string_view::npos && (salto == 0 || contenido[salto - 1] != '\r');
    return solo ? "\n" : "\r\n";
}

} // namespace

std::string iniConClave(std::string_view contenido, std::string_view seccion,
                        std::string_view clave, std::string_view valor) {
    const Sitio sitio = buscarSitio(contenido, seccion, clave);
    const std::string_view fin = finDeLineaDe(contenido);
    std::string salida;
    salida.reserve(contenido.size() + seccion.size() + clave.size() + valor.size() + 16);
    salida += contenido.substr(0, sitio.desde);
    if (!sitio.hayClave) {
        if (!salida.empty() && salida.back() != '\n') salida += fin;
        if (!sitio.haySeccion) salida.append("[").append(seccion).append("]").append(fin);
        salida.append(clave).append("=");
    }
    salida += valor;
    if (!sitio.hayClave) salida += fin;
    salida += contenido.substr(sitio.hasta);
    return salida;
}

} // namespace kv
