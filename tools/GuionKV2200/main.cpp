// SPDX-License-Identifier: Apache-2.0
#include "comprobacion.h"
#include "corrida.h"
#include "escritorio.h"
#include "objetos.h"
#include "perfil.h"
#include "valores.h"

#include "cli/castellano.h"
#include "cli/salida_entera.h"
#include "vbscript/engine.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

namespace {

struct Opciones {
    std::string archivo;
    std::string idioma = "es-AR";
    std::string valores;
    std::uint64_t veces = 1;
    bool comprobar = false;
    bool perfil = false;
};

/// The exit code if the program is to end at once.
std::optional<int> leerLinea(int argc, char** argv, Opciones& o) {
    CLI::App app("Ejecuta un guion de planta en el escritorio, sin el driver.", "GuionKV2200");
    kv::ponerEnCastellano(app);
    app.set_help_flag("-h,--help,--ayuda", "Muestra esta ayuda y termina"); // as it always was
    auto* comprobar = app.add_flag("--comprobar", o.comprobar,
                                   "Solo comprueba que el guion está bien escrito, y avisa de lo "
                                   "que no parece a propósito");
    app.add_option("--idioma", o.idioma,
                   "Cómo se escriben números y fechas: es-AR (si no se da) o en-US")
        ->type_name("PAIS")
        ->check([](const std::string& pais) {
            return pais == "es-AR" || pais == "en-US" ? "" : std::string("debe ser es-AR o en-US");
        });
    app.add_option("--valores", o.valores,
                   "Corre el guion una vez por fila de valores: renglones NOMBRE=VALOR, una tabla "
                   "CSV con una columna por nombre, o una grabación del driver")
        ->type_name("ARCHIVO")
        ->excludes(comprobar);
    app.add_option("--veces", o.veces, "Repite todo tantas veces")
        ->type_name("N")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1'000'000'000}))
        ->excludes(comprobar);
    app.add_flag("--perfil", o.perfil, "Dice en qué líneas se va el tiempo")->excludes(comprobar);
    app.add_option("ARCHIVO", o.archivo, "El guion (Windows-1252 o UTF-8)")->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return kv::terminarLinea(app, e, std::cout, std::cerr);
    }
    return std::nullopt;
}

int comprobar(vbscript::Engine& motor, const Opciones& o, const std::string& texto) {
    if (!motor.check(texto)) {
        std::cerr << textoDe(o.archivo, motor.error()) << '\n';
        return 1;
    }
    avisarDe(o.archivo, texto);
    return 0;
}

int probar(vbscript::Engine& motor, Papel& papel, const Opciones& o, const std::string& texto) {
    std::optional<Valores> valores;
    if (!o.valores.empty()) valores = leerValores(o.valores);
    Perfil perfil;
    if (o.perfil) motor.tellLinesTo(&perfil);
    Corrida corrida(motor, papel, o.archivo, valores ? &*valores : nullptr);
    const bool bien = corrida.correr(texto, o.veces, [&perfil] { perfil.terminar(); });
    papel.titular({});
    if (valores || o.veces > 1) {
        std::cout << corrida.cambios();
        std::cout << "Corridas: " << corrida.corridas() << ", con error: " << corrida.fallas()
                  << '\n';
    }
    if (o.perfil) std::cout << perfil.informe(texto);
    return bien ? 0 : 1;
}

int correr(int argc, char** argv) {
    Opciones o;
    if (const auto fin = leerLinea(argc, argv, o)) return *fin;
    const auto texto = leerGuion(o.archivo);
    if (!texto) return 1;
    std::error_code mal;
    const auto carpeta = std::filesystem::absolute(o.archivo, mal).parent_path();
    Papel papel;
    Escritorio escritorio(carpeta.string(), papel);
    vbscript::Engine motor(escritorio);
    motor.setLocale(o.idioma);
    agregarObjetos(motor, papel);
    if (o.comprobar) return comprobar(motor, o, *texto);
    try {
        return probar(motor, papel, o, *texto);
    } catch (const ValoresMalos& malos) {
        std::cerr << malos.what() << '\n';
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failure that is reported
    return kv::conSalidaEntera(correr(argc, argv), "GuionKV2200", std::cout, std::cerr);
}
