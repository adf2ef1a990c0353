// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/linea_de_orden.h"

#include "ClienteKV2200/salida.h"
#include "cli/castellano.h"
#include "config/tabla_de_ajustes.h"
#include "text/direccion_de_red.h"
#include "text/numeros.h"
#include "text/windows1252.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cmath>
#include <ostream>

namespace kv::cliente {
namespace {

/// The command line's texts before anything is made of them.
struct Textos {
    std::string servidor = Servidor().texto();
    std::string espera = "5";
    std::string durante;
    std::string direccion; ///< to be written
    std::string cual;      ///< whose reason is asked for
    std::string campo{kPrimerSeparador.porDefecto};
    std::string sobre{kTramasSeparador.porDefecto};
};

void declarar(CLI::App& app, Textos& t, Orden& orden) {
    ponerEnCastellano(app);
    app.add_option("--servidor", t.servidor,
                   "Nombre o dirección del driver (127.0.0.1:1334 si no se da); una IPv6 va entre "
                   "corchetes")
        ->type_name("NOMBRE:PUERTO");
    app.add_option("--local", orden.local,
                   "Carpeta de un driver de esta máquina: le pregunta por su zócalo, sin ocupar el "
                   "lugar del cliente de supervisión")
        ->type_name("CARPETA");
    app.add_flag("--json", orden.json, "Escribe un objeto JSON por línea");
    app.add_option("--espera", t.espera, "Segundos que espera cada respuesta (5 si no se da)")
        ->type_name("S");
    app.add_option("--separador", t.campo, "El ajuste primerSeparador del driver")
        ->type_name("TEXTO");
    app.add_option("--separador-de-tramas", t.sobre, "El ajuste tramasSeparador del driver")
        ->type_name("TEXTO");
    app.require_subcommand(1);
    app.fallthrough();
    auto* leer = app.add_subcommand("leer", "Lee variables")->group("Órdenes");
    leer->add_option("DIR", orden.direcciones, "Direcciones, como 1.1.10")->required();
    auto* escribir = app.add_subcommand("escribir", "Escribe una variable")->group("Órdenes");
    escribir->add_option("DIR", t.direccion, "Dirección, como 1.1.10")->required();
    escribir->add_option("VALOR", orden.valor, "Número")->required();
    auto* forzar = app.add_subcommand("forzar", "Fuerza lecturas de todos los bloques de un nivel")
                       ->group("Órdenes");
    forzar->add_option("NIVEL", orden.nivel, "Nivel")->required();
    forzar->add_option("VECES", orden.veces, "Cantidad de lecturas; 0 los activa, -1 los desactiva")
        ->required();
    app.add_subcommand("sincronizar", "Muestra todas las variables")->group("Órdenes");
    auto* vigilar =
        app.add_subcommand("vigilar", "Muestra las variables y sus cambios")->group("Órdenes");
    vigilar->add_option("--durante", t.durante, "Termina después de S segundos")->type_name("S");
    const auto soloLocal = [&app](const char* nombre, const char* que) {
        return app.add_subcommand(nombre, que)->group("Órdenes con --local");
    };
    soloLocal("estado", "Resume cómo está la planta");
    soloLocal("porque", "Dice por qué algo está como está")
        ->add_option("DIR", t.cual,
                     "Una variable (1.1.10), una estación (1.1) o una conexión (10.0.0.1:502)")
        ->required();
    auto* sucesos = soloLocal("sucesos", "Muestra lo que pasó");
    sucesos
        ->add_option("--desde", orden.desde,
                     "Desde esa hora (hh:mm, de ayer si hoy no llegó todavía; "
                     "AAAA-MM-DDThh:mm:ss) o ese número de suceso")
        ->type_name("HORA");
    sucesos->add_flag("--seguir", orden.seguir, "Muestra lo que pasa desde ahora");
    sucesos->add_option("--durante", t.durante, "Con --seguir, termina después de S segundos")
        ->type_name("S");
    soloLocal("bloques", "Muestra en qué está cada bloque");
    soloLocal("conexiones", "Muestra cómo está cada conexión");
    soloLocal("contadores", "Muestra las cuentas de cada conexión y estación");
    app.footer(
        "Termina con 0 si se hizo, 1 si no hubo respuesta o se rechazó (y dice qué), 2 si la "
        "orden está mal.");
}

bool segundos(const std::string& texto, double& destino) {
    const auto n = numeroDeTexto(texto);
    if (!n || !(*n > 0 && *n <= 86'400 * 365.0)) return false;
    destino = *n;
    return true;
}

/// What an operator types has a decimal comma as often as a point.
std::string conPunto(std::string numero) {
    const auto coma = numero.find(',');
    if (coma != std::string::npos && numero.find('.') == std::string::npos) numero[coma] = '.';
    return numero;
}

constexpr char kMenos = '\x01';

/// The arguments in the order in which the library wants them, last first. It would take a negative
/// number for an option, so its sign travels in disguise.
std::vector<std::string> argumentos(int argc, const char* const* argv) {
    std::vector<std::string> lista;
    for (int i = argc - 1; i > 0; --i) {
        lista.emplace_back(argv[i]);
        if (lista.back().starts_with('-') && esNumerico(conPunto(lista.back())))
            lista.back()[0] = kMenos;
    }
    return lista;
}

/// "planta:1334", "10.0.0.1:1334" or "[::1]:1334"; false for anything else.
bool servidorDeTexto(const std::string& texto, Servidor& servidor) {
    const auto dosPuntos = texto.rfind(':');
    if (dosPuntos == std::string::npos) return false;
    const auto puerto = puertoTcpDeTexto(texto.substr(dosPuntos + 1));
    std::string nombre = texto.substr(0, dosPuntos);
    const bool conCorchetes = nombre.size() > 2 && nombre.front() == '[' && nombre.back() == ']';
    if (conCorchetes) nombre = nombre.substr(1, nombre.size() - 2);
    const bool esIPv6 = nombre.find(':') != std::string::npos;
    if (!puerto || nombre.empty() || esIPv6 != conCorchetes ||
        nombre.find_first_of(" \t[]/") != std::string::npos)
        return false;
    servidor = {std::move(nombre), *puerto};
    return true;
}

/// The texts made into an order. Empty when all is good, else what is wrong.
std::string interpretar(const CLI::App& app, const Textos& t, Orden& orden) {
    const std::string accion = app.get_subcommands().front()->get_name();
    constexpr std::array<std::string_view, 11> kAcciones = {
        "leer",   "escribir", "forzar",  "sincronizar", "vigilar",   "estado",
        "porque", "sucesos",  "bloques", "conexiones",  "contadores"};
    const auto* const cual = std::find(kAcciones.begin(), kAcciones.end(), accion);
    orden.accion = static_cast<Accion>(cual - kAcciones.begin());
    if (orden.accion >= Accion::Estado && orden.local.empty())
        return accion + " necesita --local CARPETA";
    if (!servidorDeTexto(t.servidor, orden.servidor))
        return "--servidor debe ser NOMBRE:PUERTO, como 127.0.0.1:1334, planta:1334 o [::1]:1334";
    if (orden.accion == Accion::Escribir) orden.direcciones = {t.direccion};
    if (orden.accion == Accion::PorQue) orden.direcciones = {t.cual};
    if (!segundos(t.espera, orden.esperaSegundos)) return "--espera debe ser un número mayor que 0";
    if (!t.durante.empty() && !segundos(t.durante, orden.duranteSegundos))
        return "--durante debe ser un número mayor que 0";
    if (t.campo.empty() || t.sobre.empty()) return "un separador no puede estar vacío";
    orden.separadores = {windows1252DesdeUtf8(t.campo), windows1252DesdeUtf8(t.sobre)};
    for (const std::string& d : orden.direcciones) {
        if (d.empty() || d.find_first_of(";[]\r\n") != std::string::npos)
            return "dirección no válida: " + d;
    }
    for (std::string* n : {&orden.valor, &orden.nivel, &orden.veces}) {
        if (n->starts_with(kMenos)) n->front() = '-';
        *n = conPunto(*n);
        if (!n->empty() && !esNumerico(*n)) return "no es un número: " + *n;
    }
    if (orden.accion != Accion::Forzar) return {};
    for (const std::string& n : {orden.nivel, orden.veces}) {
        if (std::fmod(*numeroDeTexto(n), 1) != 0) return "NIVEL y VECES son números enteros: " + n;
    }
    if (*numeroDeTexto(orden.veces) < -1)
        return "VECES es una cantidad de lecturas, 0 para activar o -1 para desactivar";
    return {};
}

} // namespace

std::optional<int> leerOrden(int argc, const char* const* argv, Orden& orden, std::ostream& salida,
                             std::ostream& errores) {
    CLI::App app("Cliente de supervisión del driver KV2200", "ClienteKV2200");
    Textos textos;
    declarar(app, textos, orden);
    std::string error;
    try {
        app.parse(argumentos(argc, argv));
        error = interpretar(app, textos, orden);
    } catch (const CLI::Success& pedido) {
        return terminarLinea(app, pedido, salida, errores);
    } catch (const CLI::ParseError& e) {
        error = enCastellano(e);
    }
    if (error.empty()) return std::nullopt;
    // A line that could not be read to its end may not have come to how it wants its errors.
    const bool json = std::any_of(argv + 1, argv + argc,
                                  [](const char* a) { return std::string_view(a) == "--json"; });
    errores << lineaDeError(error, json) << '\n';
    if (!json) errores << "Vea ClienteKV2200 --help\n";
    return kMalaLinea;
}

} // namespace kv::cliente
