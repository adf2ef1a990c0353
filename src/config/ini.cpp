// SPDX-License-Identifier: Apache-2.0
#include "config/ini.h"

#include "text/texto.h"

#include <cstring>

namespace kv {
namespace {

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF"; // what some editors put before the text
constexpr std::size_t kMaximoDeEntradas = 1 << 20;
constexpr std::size_t kMaximoDeRecordados = 256;
constexpr std::size_t kMaximoDePasos = 256; // of a look-up, so that no choice of keys is slow

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

std::uint32_t dispersar(std::uint32_t seccion, std::string_view nombre) {
    std::uint32_t h = 2166136261U ^ (seccion * 2654435761U);
    for (const char c : nombre) {
        const char minuscula = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        h = (h ^ static_cast<std::uint8_t>(minuscula)) * 16777619U;
    }
    return h ^ (h >> 15);
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

Ini::Ini(std::string contenido) : contenido_(std::move(contenido)) { indexar(); }

void Ini::indexar() {
    std::uint32_t seccion = kNinguna; // keys before the first section, or in a repeated one
    LectorIni lector(contenido_);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Otra) continue;
        const bool esSeccion = l.clase == LineaIni::Clase::Seccion;
        if (!esSeccion && seccion == kNinguna) continue;
        bool nueva = false;
        const std::uint32_t n = anotar(esSeccion ? kNinguna : seccion, l, nueva);
        if (n == kNinguna) {
            completo_ = false;
            return;
        }
        if (esSeccion) seccion = nueva ? n : kNinguna;
    }
}

LineaIni Ini::lineaDe(const Entrada& e) const {
    LectorIni lector(contenido_, e.inicio, e.linea - 1);
    lector.siguiente();
    return lector.linea();
}

std::uint32_t Ini::encontrar(std::uint32_t seccion, std::string_view nombre) const {
    if (lugares_.empty()) return kNinguna;
    const std::uint32_t h = dispersar(seccion, nombre);
    const std::size_t mascara = lugares_.size() - 1;
    for (std::size_t i = h & mascara; lugares_[i] != kNinguna; i = (i + 1) & mascara) {
        const Entrada& e = entradas_[lugares_[i]];
        if (e.dispersion == h && e.seccion == seccion && igualSinCaja(lineaDe(e).nombre, nombre))
            return lugares_[i];
    }
    return kNinguna;
}

bool Ini::crecer() {
    if (entradas_.size() >= kMaximoDeEntradas) return false;
    if (entradas_.size() * 2 < lugares_.size()) return true;
    lugares_.assign(lugares_.empty() ? 64 : lugares_.size() * 2, kNinguna);
    const std::size_t mascara = lugares_.size() - 1;
    for (std::uint32_t n = 0; n < entradas_.size(); ++n) {
        std::size_t i = entradas_[n].dispersion & mascara;
        while (lugares_[i] != kNinguna)
            i = (i + 1) & mascara;
        lugares_[i] = n;
    }
    return true;
}

std::uint32_t Ini::anotar(std::uint32_t seccion, const LineaIni& linea, bool& nueva) {
    if (!crecer()) return kNinguna;
    const std::uint32_t h = dispersar(seccion, linea.nombre);
    const std::size_t mascara = lugares_.size() - 1;
    std::size_t i = h & mascara;
    for (std::size_t pasos = 0; lugares_[i] != kNinguna; i = (i + 1) & mascara, ++pasos) {
        if (pasos == kMaximoDePasos) return kNinguna;
        const Entrada& e = entradas_[lugares_[i]];
        if (e.dispersion == h && e.seccion == seccion &&
            igualSinCaja(lineaDe(e).nombre, linea.nombre))
            return lugares_[i];
    }
    nueva = true;
    lugares_[i] = static_cast<std::uint32_t>(entradas_.size());
    entradas_.push_back({h, seccion, static_cast<std::uint32_t>(linea.inicio),
                         static_cast<std::uint32_t>(linea.numero)});
    return lugares_[i];
}

std::optional<Ini::Hallazgo> Ini::buscar(std::string_view seccion, std::string_view clave) const {
    const std::uint32_t s = encontrar(kNinguna, seccion);
    const std::uint32_t n = s == kNinguna ? kNinguna : encontrar(s, clave);
    if (n != kNinguna) {
        const LineaIni l = lineaDe(entradas_[n]);
        return Hallazgo{l.valor, l.numero};
    }
    return completo_ ? std::nullopt : recordar(seccion, clave);
}

std::optional<Ini::Hallazgo> Ini::recordar(std::string_view seccion, std::string_view clave) const {
    std::string llave = minusculas(seccion).append("=").append(minusculas(clave));
    const auto lugar = recordados_.find(llave);
    if (lugar != recordados_.end()) return lugar->second;
    if (recordados_.size() == kMaximoDeRecordados) recordados_.clear();
    return recordados_.emplace(std::move(llave), recorrer(seccion, clave)).first->second;
}

std::optional<Ini::Hallazgo> Ini::recorrer(std::string_view seccion, std::string_view clave) const {
    bool dentro = false;
    LectorIni lector(contenido_);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Seccion) {
            if (dentro) break;
            dentro = igualSinCaja(l.nombre, seccion);
        } else if (dentro && l.clase == LineaIni::Clase::Clave && igualSinCaja(l.nombre, clave)) {
            return Hallazgo{l.valor, l.numero};
        }
    }
    return std::nullopt;
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
