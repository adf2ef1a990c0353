// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/linea_de_orden.h"

#include "cli/castellano.h"
#include "text/numeros.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <map>
#include <ostream>

namespace kv::simulador {
namespace {

/// The command line's texts before anything is made of them.
struct Textos {
    std::vector<std::string> escuchar;
    std::vector<std::string> registros;
    std::vector<std::string> estaciones;
    std::string semilla = "1";
    std::map<std::string, std::string> fallas; ///< by option name
    bool fragmentar = false;
    bool cortarDeGolpe = false;
};

constexpr const char* kPie =
    "Opciones de --estacion: retardo-ms=A[-B], sin-respuesta=P, basura=P, fragmentar,\n"
    "  perder-respuesta-de-escritura=P, ausente=DURA/CADA (calla los últimos DURA segundos de\n"
    "  cada CADA) y, para una dirección entera, cortar-cada=S y cortar-de-golpe=1. Valen sobre\n"
    "  las generales.\n"
    "P es una probabilidad de 0 a 1. Todo el azar sale de --semilla y se repite con ella.\n"
    "Ejemplos:\n"
    "  SimuladorKV2200 --config DRIVER_KV2200_Config.ini --registro '*.10=rampa' 25.1F=1234\n"
    "  SimuladorKV2200 --escuchar 127.0.0.1:5021 --estacion 127.0.0.1:5021/02,retardo-ms=100-900\n";

void opcionDeFalla(CLI::App& app, Textos& t, const std::string& nombre, const char* tipo,
                   const char* ayuda) {
    app.add_option("--" + nombre, t.fallas[nombre], ayuda)->type_name(tipo);
}

void declarar(CLI::App& app, Textos& t, Orden& orden) {
    ponerEnCastellano(app);
    auto* config = app.add_option("--config", orden.config,
                                  "Sirve todas las direcciones de estaciones de una configuración "
                                  "del driver")
                       ->type_name("ARCHIVO.ini");
    app.add_option("--escuchar", t.escuchar,
                   "Sirve esta dirección, con cualquier estación; el puerto 0 elige uno libre")
        ->type_name("IP:PUERTO")
        ->excludes(config);
    app.add_option("--registro", t.registros,
                   "Valor de un registro: un entero, rampa, seno o azar. ESTACION son las dos "
                   "cifras de su byte, REG es hexadecimal, * vale por todos")
        ->type_name("[IP:PUERTO/]ESTACION.REG=VALOR");
    app.add_option("--estacion", t.estaciones, "Opciones de una dirección o de una estación")
        ->type_name("LUGAR,OPCION=VALOR,...");
    opcionDeFalla(app, t, "retardo-ms", "A[-B]", "Tarda A, o de A a B, milisegundos en responder");
    opcionDeFalla(app, t, "sin-respuesta", "P", "Probabilidad de no responder");
    opcionDeFalla(app, t, "basura", "P",
                  "Probabilidad de bytes de más ante la respuesta, o de uno cambiado en ella");
    app.add_flag("--fragmentar", t.fragmentar, "Parte las respuestas, con pausas cortas");
    opcionDeFalla(app, t, "cortar-cada", "S", "Corta cada enlace cada S segundos, más o menos");
    app.add_flag("--cortar-de-golpe", t.cortarDeGolpe,
                 "Los corta como quien muere: lo que iba en camino se pierde");
    opcionDeFalla(app, t, "perder-respuesta-de-escritura", "P",
                  "Probabilidad de guardar lo escrito y no responder");
    opcionDeFalla(app, t, "ausente", "DURA/CADA",
                  "Todas callan los últimos DURA segundos de cada CADA");
    app.add_option("--semilla", t.semilla, "Semilla del azar (1 si no se da)")->type_name("N");
    app.add_flag("--traza", orden.traza, "Imprime cada solicitud y respuesta en hexadecimal");
    app.footer(kPie);
}

std::string queja(const std::string& opcion, const std::string& texto, const std::string& error) {
    std::string q = opcion;
    return q.append(" ").append(texto).append(": ").append(error);
}

/// The texts made into an order. Empty when all is good, else what is wrong.
std::string interpretar(const Textos& t, Orden& orden) {
    if (orden.config.empty() && t.escuchar.empty())
        return "falta qué servir: --config ARCHIVO.ini o --escuchar IP:PUERTO";
    std::string error;
    for (const std::string& texto : t.escuchar) {
        const auto e = escuchadaDeTexto(texto);
        if (!e) return queja("--escuchar", texto, "debe ser IP:PUERTO, como 127.0.0.1:5021");
        orden.escuchar.push_back(*e);
    }
    for (const std::string& texto : t.registros) {
        orden.registros.push_back(registroDeTexto(texto, error));
        if (!error.empty()) return queja("--registro", texto, error);
    }
    for (const std::string& texto : t.estaciones) {
        orden.porLugar.push_back(fallasDeTexto(texto, error));
        if (!error.empty()) return queja("--estacion", texto, error);
    }
    for (const auto& [nombre, valor] : t.fallas) {
        error = valor.empty() ? "" : fijarFalla(orden.fallas, nombre, valor);
        if (!error.empty()) return queja("--" + nombre, valor, error);
    }
    orden.fallas.fragmentar = t.fragmentar;
    orden.fallas.cortarDeGolpe = t.cortarDeGolpe;
    const auto semilla = numeroDeTexto(t.semilla);
    if (!semilla || !(*semilla >= 0 && *semilla <= 9007199254740992.0) ||
        *semilla != std::floor(*semilla))
        return queja("--semilla", t.semilla, "debe ser un entero de 0 a 2^53");
    orden.semilla = static_cast<std::uint64_t>(*semilla);
    return {};
}

} // namespace

std::optional<int> leerOrden(int argc, const char* const* argv, Orden& orden, std::ostream& salida,
                             std::ostream& errores) {
    CLI::App app("Planta simulada: estaciones KV2200 en TCP, con las fallas que se le pidan",
                 "SimuladorKV2200");
    Textos textos;
    declarar(app, textos, orden);
    std::string error;
    try {
        app.parse(argc, argv);
        error = interpretar(textos, orden);
    } catch (const CLI::ParseError& e) {
        return terminarLinea(app, e, salida, errores);
    }
    if (error.empty()) return std::nullopt;
    return terminarLinea(app, error, errores);
}

} // namespace kv::simulador
