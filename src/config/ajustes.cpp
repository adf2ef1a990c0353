// SPDX-License-Identifier: Apache-2.0
#include "config/ajustes.h"

#include "config/ini.h"
#include "platform/ruta.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

namespace kv {
namespace {

constexpr std::size_t kMaximoDeCopias = 8;

bool esTexto(std::string_view contenido) {
    return !empiezaComoUtf16(contenido) && contenido.find('\0') == std::string_view::npos;
}

/// Whether a last line without an end looks cut off: a name without a value, half a title, or a key
/// of the door without a value.
bool esFragmento(const LineaIni& l, std::string_view contenido) {
    const std::string_view texto = recortar(contenido.substr(l.inicio, l.finDeTexto - l.inicio));
    if (l.clase == LineaIni::Clase::Seccion) return texto.find(']') == std::string_view::npos;
    if (l.clase == LineaIni::Clase::Clave)
        return l.valor.empty() &&
               igualSinCaja(l.nombre.substr(0, kPrefijoDeEscucha.size()), kPrefijoDeEscucha);
    return !texto.empty() && texto.front() != ';';
}

std::string sinSaltos(std::string_view valor) {
    std::string v = windows1252DesdeUtf8(valor);
    for (char& c : v) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    return v;
}

} // namespace

std::string_view defectoDeAjustes(std::string_view contenido, std::string_view antes) {
    constexpr std::string_view kCortado = "termina a mitad de un renglón: parece a medio copiar";
    if (recortar(contenido).empty()) return "está vacío";
    if (!esTexto(contenido)) return "no es un texto en Windows-1252 (¿guardado como UTF-16?)";
    LectorIni lector(contenido);
    bool haySeccion = false;
    while (lector.siguiente())
        haySeccion = haySeccion || (lector.linea().clase == LineaIni::Clase::Seccion &&
                                    igualSinCaja(lector.linea().nombre, kSeccionDeAjustes));
    if (!haySeccion) return "no tiene la sección [DRIVER_KV2200]";
    if (contenido.back() == '\n') return {};
    const bool cortado = antes.size() > contenido.size() && antes.starts_with(contenido);
    return cortado || esFragmento(lector.linea(), contenido) ? kCortado : std::string_view();
}

Ajustes::Ajustes(Archivos& archivos, std::string carpetaDelPrograma, const Reloj* reloj)
    : archivos_(archivos), reloj_(reloj), carpeta_(std::move(carpetaDelPrograma)),
      archivoDeAjustes_(archivos.comoEsta(unirRuta(carpeta_, kArchivoDeAjustes))) {}

bool Ajustes::esDeAjustes(std::string_view archivo) const {
    return igualSinCaja(archivo, archivoDeAjustes_);
}

const Ajustes::Copia& Ajustes::copia(const std::string& ruta) {
    const bool propios = esDeAjustes(ruta);
    const std::string& archivo = propios ? archivoDeAjustes_ : ruta;
    auto lugar = copias_.find(archivo);
    if (lugar == copias_.end()) {
        // What the settings said last must not be forgotten.
        if (copias_.size() == kMaximoDeCopias)
            std::erase_if(copias_, [this](const auto& c) { return !esDeAjustes(c.first); });
        lugar = copias_.emplace(archivo, Copia{}).first;
    }
    Copia& c = lugar->second;
    if (c.valida && c.mirada == vuelta_) return c;
    const HuellaDeArchivo huella = archivos_.huella(archivo);
    c.mirada = vuelta_;
    if (c.valida && c.leida && c.huella == huella) return c;
    c.huella = huella;
    c.valida = true;
    c.leida = false; // until all of it has been
    auto contenido = huella.existe ? archivos_.leer(archivo, kMaximoDeAjustes) : std::string();
    const bool leida = contenido.has_value();
    if (propios) {
        adoptar(c, std::move(contenido));
    } else if (contenido) {
        // What cannot be read just now still says what it said: a want of descriptors that lasts a
        // moment must not put the defaults in force.
        c.ini = Ini(std::move(*contenido));
    }
    c.leida = leida;
    return c;
}

/// The settings file has another content than at the last look, or is missing now.
void Ajustes::adoptar(Copia& c, std::optional<std::string> contenido) {
    const bool primera = saber_ == Saber::Nada;
    if (!c.huella.existe && saber_ != Saber::Hubo) {
        saber_ = Saber::NuncaHubo;
        return;
    }
    saber_ = Saber::Hubo;
    if (!c.huella.existe)
        defecto_ = "ya no está";
    else if (!contenido)
        defecto_ = "no se puede leer o tiene más de 4 MiB";
    else
        defecto_ = defectoDeAjustes(*contenido, c.ini.contenido());
    const bool nuestro = contenido && !escrito_.empty() && *contenido == escrito_;
    if (!nuestro && !(primera && defecto_.empty())) {
        asentados_ = false;
        cambioMs_ = reloj_ != nullptr ? reloj_->monotonicoMs() : 0;
    }
    if (!defecto_.empty()) {
        // There is nothing better to read: a project may be named all the same.
        if (!entero_ && contenido) c.ini = Ini(std::move(*contenido));
        return;
    }
    c.ini = Ini(std::move(*contenido));
    entero_ = true;
    ++cambios_;
}

std::string_view Ajustes::defecto() {
    static_cast<void>(ajustes());
    return defecto_;
}

bool Ajustes::conocidos() {
    static_cast<void>(ajustes());
    return entero_ || saber_ == Saber::NuncaHubo;
}

bool Ajustes::asentados() {
    static_cast<void>(ajustes());
    if (!asentados_)
        asentados_ = reloj_ == nullptr || reloj_->monotonicoMs() - cambioMs_ >= kSegundaMiradaMs;
    return asentados_ && defecto_.empty();
}

const std::string& Ajustes::contenido() { return ajustes().ini.contenido(); }

std::uint64_t Ajustes::cambios() {
    static_cast<void>(ajustes());
    return cambios_;
}

std::string Ajustes::leerIni(const std::string& archivo, std::string_view seccion,
                             std::string_view clave, std::string_view porDefecto) {
    const auto hallazgo = copia(archivo).ini.buscar(seccion, clave);
    return hallazgo ? utf8DesdeWindows1252(hallazgo->valor) : std::string(porDefecto);
}

std::size_t Ajustes::lineaDe(const std::string& archivo, std::string_view seccion,
                             std::string_view clave) {
    const auto hallazgo = copia(archivo).ini.buscar(seccion, clave);
    return hallazgo ? hallazgo->linea : 0;
}

bool Ajustes::intentarEscribir(const std::string& archivo, std::string_view seccion,
                               std::string_view clave, std::string_view valor) {
    if (!escribe_) return false;
    const bool propios = esDeAjustes(archivo);
    const Copia& vista = copia(archivo);
    const bool hay = archivos_.huella(archivo).existe;
    if (propios && (!defecto_.empty() || (!hay && saber_ == Saber::Hubo))) return false;
    std::string contenido;
    if (hay) {
        // Read afresh: what others wrote since the last look must not be undone.
        auto leido = archivos_.leer(archivo, kMaximoDeAjustes);
        if (!leido || !esTexto(*leido)) return false;
        if (propios && !defectoDeAjustes(*leido, vista.ini.contenido()).empty()) return false;
        // Half a file that we end properly would pass for a whole one.
        if (propios && !leido->ends_with('\n') && !asentados()) return false;
        contenido = std::move(*leido);
    }
    const bool soloNuestro = asentados_ && contenido == vista.ini.contenido();
    std::string nuevo = iniConClave(contenido, seccion, clave, sinSaltos(valor));
    if (!archivos_.reemplazar(archivo, nuevo)) return false;
    if (propios) escrito_ = soloNuestro ? std::move(nuevo) : std::string();
    for (auto& [ruta, c] : copias_) {
        if (igualSinCaja(ruta, archivo)) c.valida = false;
    }
    return true;
}

void Ajustes::escribirIni(const std::string& archivo, std::string_view seccion,
                          std::string_view clave, std::string_view valor) {
    intentarEscribir(archivo, seccion, clave, valor);
}

std::string Ajustes::leerConfiguracion(std::string_view clave, std::string_view porDefecto) {
    std::string texto = leerIni(archivoDeAjustes_, kSeccionDeAjustes, clave, "");
    if (!texto.empty() || porDefecto.empty()) return texto;
    // A file that changed just now may be half copied: writing to it would keep it so.
    if (!asentados()) return std::string(porDefecto);
    const HuellaDeArchivo huella = copia(archivoDeAjustes_).huella;
    if (huella != huellaNegada_) negados_.clear();
    if (!negados_.contains(clave) &&
        !intentarEscribir(archivoDeAjustes_, kSeccionDeAjustes, clave, porDefecto)) {
        huellaNegada_ = huella;
        negados_.emplace(clave);
    }
    return std::string(porDefecto);
}

void Ajustes::escribirConfiguracion(std::string_view clave, std::string_view valor) {
    escribirIni(archivoDeAjustes_, kSeccionDeAjustes, clave, valor);
}

bool Ajustes::existeArchivo(const std::string& ruta) { return archivos_.existe(ruta); }

std::string enElLog(std::string_view clave, const std::string& texto, double usado) {
    return std::string(clave) + "=" + texto + ": valor no valido, se usa " + textoDeNumero(usado);
}

double Ajustes::leerNumero(const AjusteNumerico& ajuste, const AvisoDeAjuste& avisar) {
    auto lugar = numeros_.find(ajuste.clave);
    if (lugar == numeros_.end())
        lugar = numeros_.emplace(ajuste.clave, Numero{ajuste.porDefecto, {}}).first;
    Numero& n = lugar->second;
    const std::string texto = leerConfiguracion(ajuste.clave, textoDeNumero(ajuste.porDefecto));
    const auto numero = numeroDeTexto(texto);
    if (numero && *numero >= ajuste.minimo && *numero <= ajuste.maximo) {
        n.ultimoBueno = *numero;
        n.malo.clear();
    } else if (n.malo != texto) {
        n.malo = texto;
        if (avisar) avisar(ajuste.clave, texto, n.ultimoBueno);
    }
    return n.ultimoBueno;
}

} // namespace kv
