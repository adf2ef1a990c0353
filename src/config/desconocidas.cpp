// SPDX-License-Identifier: Apache-2.0
#include "config/desconocidas.h"

#include "config/exportacion.h"
#include "config/tabla_de_ajustes.h"
#include "platform/archivos.h"
#include "text/parecido.h"
#include "text/texto.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

using Nombres = std::span<const std::string_view>;

constexpr std::array<std::string_view, 1> kDeProyecto = {kRutaProyecto.clave};
constexpr std::array<std::string_view, 2> kSeccionesDeAjustes = {kSeccionDeAjustes,
                                                                 kSeccionDeProyecto};

bool esta(std::string_view nombre, Nombres nombres) {
    return std::any_of(nombres.begin(), nombres.end(),
                       [nombre](std::string_view n) { return igualSinCaja(n, nombre); });
}

/// The door tells its own, because it closes for them.
bool esDeLaPuerta(const LineaIni& l) {
    return igualSinCaja(l.nombre.substr(0, kPrefijoDeEscucha.size()), kPrefijoDeEscucha);
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

Desconocidas::~Desconocidas() {
    for (const Hallada& d : halladas_) {
        std::string que = d.que;
        if (d.veces > 1)
            que +=
                " (y " + std::to_string(d.veces - 1) + (d.veces == 2 ? " vez más)" : " veces más)");
        problemas_.agregar(archivo_, d.linea, que + d.talVez, "se ignora");
    }
}

void Desconocidas::hallada(std::string_view clase, std::string_view nombre,
                           std::string_view escrito, std::size_t linea, Nombres conocidos) {
    const std::string llave = std::string(clase) + "|" + minusculas(nombre);
    if (const auto d = cual_.find(llave); d != cual_.end()) {
        ++halladas_[d->second].veces;
    } else if (halladas_.size() < Problemas::kMaximo) {
        cual_.emplace(llave, halladas_.size());
        halladas_.push_back(Hallada{citar(escrito) + " no es " + std::string(clase),
                                    talVez(nombre, conocidos), linea, 1});
    }
}

void Desconocidas::sinIgual(const LineaIni& l, std::string_view contenido) {
    const auto todo = contenido.substr(l.inicio, l.finDeTexto - l.inicio);
    const auto texto = recortar(todo);
    if (!texto.empty() && texto.front() != ';')
        hallada("una clave: falta el \"=\"", todo, todo, l.numero, {});
}

void revisarNombresDeAjustes(std::string_view contenido, const std::string& archivo,
                             Problemas& problemas) {
    Desconocidas d(archivo, problemas);
    const auto deAjustes = clavesDeAjustes();
    LectorIni lector(contenido);
    Nombres conocidos; // of the section, if it is a known one
    std::string clase;
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Seccion) {
            const bool propia = igualSinCaja(l.nombre, kSeccionDeAjustes);
            const bool sirve = esta(l.nombre, kSeccionesDeAjustes);
            conocidos = !sirve ? Nombres() : propia ? Nombres(deAjustes) : Nombres(kDeProyecto);
            clase = "una clave de [" +
                    std::string(propia ? kSeccionDeAjustes : kSeccionDeProyecto) + "]";
            if (!sirve)
                d.hallada("una sección conocida", l.nombre, l.nombre, l.numero,
                          kSeccionesDeAjustes);
        } else if (conocidos.empty() || esDeLaPuerta(l)) {
            continue;
        } else if (l.clase == LineaIni::Clase::Otra) {
            d.sinIgual(l, contenido);
        } else if (!esta(l.nombre, conocidos)) {
            d.hallada(clase, l.nombre, l.nombre, l.numero, conocidos);
        }
    }
}

void revisarRepetidasDeAjustes(std::string_view contenido, const std::string& archivo,
                               Problemas& problemas) {
    std::map<std::string, std::size_t> secciones;
    std::map<std::string, std::size_t> claves; // of the present section
    bool cuenta = false;                       // a section that stands there for the first time
    const auto mirar = [&](auto& vistas, const LineaIni& l, const std::string& que) {
        const auto [antes, nueva] = vistas.try_emplace(minusculas(l.nombre), l.numero);
        if (!nueva)
            problemas.agregar(archivo, l.numero,
                              que + " está repetida: vale la de la línea " +
                                  std::to_string(antes->second),
                              "esta no cuenta");
        return nueva;
    };
    LectorIni lector(contenido);
    while (lector.siguiente()) {
        const LineaIni& l = lector.linea();
        if (l.clase == LineaIni::Clase::Seccion) {
            claves.clear();
            cuenta = mirar(secciones, l, "la sección " + citar(l.nombre));
        } else if (cuenta && l.clase == LineaIni::Clase::Clave && !esDeLaPuerta(l)) {
            mirar(claves, l, citar(l.nombre));
        }
    }
}

Trabajo revisarNombresDeExportacion(std::string_view contenido, const std::string& archivo,
                                    Problemas& problemas, Porciones& porciones) {
    constexpr std::int64_t kPorLinea = 6;
    const ParteDeExportacion puerto{"un dato de un puerto", kCamposDePuertoExportado};
    const ParteDeExportacion estacion{"un dato de una estación", kCamposDeEstacionExportada};
    const ParteDeExportacion bloque{"un dato de un bloque", kCamposDeBloqueExportado};
    const ParteDeExportacion* parte = &puerto;
    Desconocidas d(archivo, problemas);
    std::size_t numero = 0;
    for (std::size_t desde = 0; desde < contenido.size();) {
        const std::string_view linea = contenido.substr(desde, contenido.find('\n', desde) - desde);
        desde += linea.size() + 1;
        if (++numero < 3) continue; // the header's two may say anything
        co_await porciones.gastar(kPorLinea + costoDeLeer(linea));
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
