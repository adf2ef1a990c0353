#include "config/ajustes.h"

#include "platform/ruta.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <array>

namespace kv {
namespace {

constexpr std::array kAjustesNumericos = {
    kTiempoEntrePoleo,    kBaseSolicitarConexiones, kIntervalosConectando, kIntervalosDeConectar,
    kIntervalosFuera,     kBaseKeepAlive,           kMaximosKeepAlive,     kIntervalosKeepAlive,
    kPuertoEscucha,       kTiempoDelGuion,          kHonduraDelGuion,      kMemoriaDelGuion,
    kPasosDelGuion,       kReintentoDelGuion,       kReclamoDeEscrituras,  kEstacionMuda,
    kVigenciaDeEscrituras};

constexpr std::size_t kMaximoDeCopias = 8;

std::string sinSaltos(std::string_view valor) {
    std::string v = windows1252DesdeUtf8(valor);
    for (char& c : v) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    return v;
}

} // namespace

std::span<const AjusteNumerico> ajustesNumericos() { return kAjustesNumericos; }

Ajustes::Ajustes(Archivos& archivos, std::string carpetaDelPrograma)
    : archivos_(archivos), carpeta_(std::move(carpetaDelPrograma)),
      archivoDeAjustes_(unirRuta(carpeta_, kArchivoDeAjustes)) {}

const Ajustes::Copia& Ajustes::copia(const std::string& archivo) {
    auto lugar = copias_.find(archivo);
    if (lugar == copias_.end()) {
        if (copias_.size() == kMaximoDeCopias) copias_.clear();
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
    auto contenido = huella.existe ? archivos_.leer(archivo, kMaximoDeArchivo) : std::string();
    // What cannot be read just now still says what it said: a want of descriptors that lasts a
    // moment must not put the defaults in force.
    if (!contenido) return c;
    c.ini = Ini(std::move(*contenido));
    c.leida = true;
    return c;
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

bool Ajustes::ilegible(const std::string& archivo) {
    const Copia& c = copia(archivo);
    return c.huella.existe && !c.leida;
}

bool Ajustes::intentarEscribir(const std::string& archivo, std::string_view seccion,
                               std::string_view clave, std::string_view valor) {
    if (!escribe_) return false;
    std::string contenido;
    if (archivos_.huella(archivo).existe) {
        // Read afresh: what others wrote since the last look must not be undone.
        auto leido = archivos_.leer(archivo, kMaximoDeArchivo);
        if (!leido) return false;
        contenido = std::move(*leido);
    }
    if (!archivos_.reemplazar(archivo, iniConClave(contenido, seccion, clave, sinSaltos(valor))))
        return false;
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
    // Whether the key is missing is not known, and what it says must not be overwritten.
    if (ilegible(archivoDeAjustes_)) return std::string(porDefecto);
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

double Ajustes::leerTiempo(const AjusteNumerico& ajuste, const AvisoDeAjuste& avisar) {
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
