// SPDX-License-Identifier: Apache-2.0
#include "config/desconocidas.h"

#include "config/claves.h"
#include "config/exportacion.h"
#include "config/ini.h"
#include "config/tabla_de_ajustes.h"
#include "text/parecido.h"
#include "text/texto.h"

#include <algorithm>
#include <array>
#include <map>

namespace kv {
namespace {

using Nombres = std::span<const std::string_view>;

constexpr std::array<std::string_view, 1> kDeProyecto = {kRutaProyecto.clave};
constexpr std::array<std::string_view, 1> kDeConfig = {kCantPuertos};
constexpr std::array<std::string_view, 2> kSeccionesDeAjustes = {kSeccionDeAjustes,
                                                                 kSeccionDeProyecto};
constexpr std::array<std::string_view, 2> kSeccionesDeDriver = {kSeccionDeConfig, "PUERTO1"};

bool esta(std::string_view nombre, Nombres nombres) {
    return std::any_of(nombres.begin(), nombres.end(),
                       [nombre](std::string_view n) { return igualSinCaja(n, nombre); });
}

/// What means nothing, each name once with the line where it stands first.
class Desconocidas {
  public:
    Desconocidas(const std::string& archivo, Problemas& problemas)
        : archivo_(archivo), problemas_(problemas) {}
    ~Desconocidas() {
        for (const Hallada& d : halladas_) {
            std::string que = d.que;
            if (d.veces > 1)
                que += " (y " + std::to_string(d.veces - 1) +
                       (d.veces == 2 ? " vez más)" : " veces más)");
            problemas_.agregar(archivo_, d.linea, que + d.talVez, "se ignora");
        }
    }
    Desconocidas(const Desconocidas&) = delete;
    Desconocidas& operator=(const Desconocidas&) = delete;

    /// `clase` and `nombre` are what is the same however often it stands there; `escrito` is how it
    /// does for the first time.
    void hallada(std::string_view clase, std::string_view nombre, std::string_view escrito,
                 std::size_t linea, Nombres conocidos) {
        const std::string llave = std::string(clase) + "|" + minusculas(nombre);
        if (const auto d = cual_.find(llave); d != cual_.end()) {
            ++halladas_[d->second].veces;
        } else if (halladas_.size() < Problemas::kMaximo) {
            cual_.emplace(llave, halladas_.size());
            halladas_.push_back(Hallada{citar(escrito) + " no es " + std::string(clase),
                                        talVez(nombre, conocidos), linea, 1});
        }
    }
    void clave(std::string_view nombre, std::string_view seccion, std::size_t linea,
               Nombres conocidos) {
        if (!esta(nombre, conocidos))
            hallada("una clave de [" + std::string(seccion) + "]", nombre, nombre, linea,
                    conocidos);
    }

  private:
    struct Hallada {
        std::string que;
        std::string talVez;
        std::size_t linea;
        std::size_t veces;
    };
    const std::string& archivo_;
    Problemas& problemas_;
    std::vector<Hallada> halladas_; ///< in the order of their lines
    std::map<std::string, std::size_t> cual_;
};

/// A key of a port's section: one of its own, or "Esclavo12_" or "Bloque12_" and a field.
void claveDePuerto(const LineaIni& l, Desconocidas& d) {
    const auto decir = [&](std::string_view clase, std::string_view nombre, Nombres conocidos) {
        if (!esta(nombre, conocidos)) d.hallada(clase, nombre, l.nombre, l.numero, conocidos);
    };
    const auto entrada = entradaDe(l.nombre);
    if (!entrada) return decir("una clave de un puerto", l.nombre, kCamposDePuerto);
    const std::string_view campo = l.nombre.substr(entrada->nombre.size());
    if (entrada->esBloque) return decir("un dato de un bloque", campo, kCamposDeBloque);
    decir("un dato de una estación", campo, kCamposDeEsclavo);
}

bool esComentario(std::string_view contenido, const LineaIni& l) {
    const auto texto = recortar(contenido.substr(l.inicio, l.finDeTexto - l.inicio));
    return texto.empty() || texto.front() == ';';
}

/// Goes through an INI file: `clave` is called with every key and its section, as far as `conocida`
/// says that the section is a known one.
template <class Conocida, class Clave>
void recorrer(std::string_view contenido, Desconocidas& d, Nombres secciones, Conocida conocida,
              Clave clave) {
    LectorIni lector(contenido);
    std::string_view seccion;
    bool sirve = false;
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Seccion) {
            seccion = l.nombre;
            sirve = conocida(seccion);
            if (!sirve) d.hallada("una sección conocida", seccion, seccion, l.numero, secciones);
        } else if (l.clase == LineaIni::Clase::Clave) {
            if (sirve) clave(l, seccion);
        } else if (sirve && !esComentario(contenido, l)) {
            const auto texto = contenido.substr(l.inicio, l.finDeTexto - l.inicio);
            d.hallada("una clave: falta el \"=\"", texto, texto, l.numero, {});
        }
    }
}

/// Fields of a record of the export, by the part of the file that it stands in.
struct ParteDeExportacion {
    std::string_view clase;
    Nombres campos;
};

} // namespace

std::vector<std::string_view> clavesDeAjustes() {
    std::vector<std::string_view> claves;
    for (const AjusteNumerico& a : ajustesNumericos())
        claves.push_back(a.clave);
    for (const AjusteDeTexto& a : ajustesDeTexto()) {
        if (a.seccion == kSeccionDeAjustes) claves.push_back(a.clave);
    }
    return claves;
}

std::string talVez(std::string_view texto, Nombres nombres) {
    const std::string_view cual = masParecido(texto, nombres);
    return cual.empty() ? "" : ": ¿es " + std::string(cual) + "?";
}

void revisarNombresDeAjustes(std::string_view contenido, const std::string& archivo,
                             Problemas& problemas) {
    Desconocidas d(archivo, problemas);
    const auto deAjustes = clavesDeAjustes();
    recorrer(
        contenido, d, kSeccionesDeAjustes,
        [](std::string_view s) { return esta(s, kSeccionesDeAjustes); },
        [&](const LineaIni& l, std::string_view seccion) {
            // The door tells its own, because it closes for them.
            if (igualSinCaja(l.nombre.substr(0, kPrefijoDeEscucha.size()), kPrefijoDeEscucha))
                return;
            const bool propia = igualSinCaja(seccion, kSeccionDeAjustes);
            d.clave(l.nombre, propia ? kSeccionDeAjustes : kSeccionDeProyecto, l.numero,
                    propia ? Nombres(deAjustes) : Nombres(kDeProyecto));
        });
}

void revisarNombresDeDriver(std::string_view contenido, const std::string& archivo,
                            Problemas& problemas) {
    Desconocidas d(archivo, problemas);
    recorrer(
        contenido, d, kSeccionesDeDriver,
        [](std::string_view s) {
            return igualSinCaja(s, kSeccionDeConfig) || ordinalDePuerto(s) != 0;
        },
        [&](const LineaIni& l, std::string_view seccion) {
            if (ordinalDePuerto(seccion) != 0) return claveDePuerto(l, d);
            d.clave(l.nombre, kSeccionDeConfig, l.numero, kDeConfig);
        });
}

void revisarNombresDeExportacion(std::string_view contenido, const std::string& archivo,
                                 Problemas& problemas) {
    const ParteDeExportacion puerto{"un dato de un puerto", kCamposDePuertoExportado};
    const ParteDeExportacion estacion{"un dato de una estación", kCamposDeEstacionExportada};
    const ParteDeExportacion bloque{"un dato de un bloque", kCamposDeBloqueExportado};
    const ParteDeExportacion* parte = &puerto;
    Desconocidas d(archivo, problemas);
    std::size_t numero = 0;
    for (const std::string_view linea : partir(contenido, '\n')) {
        if (++numero < 3) continue; // the header's two may say anything
        for (const std::string_view campo : camposDeExportacion(linea)) {
            const std::string_view nombre = campo.substr(0, campo.find(':'));
            if (campo == "esclavos:inicio")
                parte = &estacion;
            else if (campo == "bloques:inicio")
                parte = &bloque;
            else if (campo == "esclavos:fin" || campo == "bloques:fin")
                parte = &puerto;
            else if (!igualSinCaja(nombre, "puertos") && !esta(nombre, parte->campos))
                d.hallada(parte->clase, nombre, nombre, numero, parte->campos);
        }
    }
}

} // namespace kv
