// SPDX-License-Identifier: Apache-2.0
#include "cli/castellano.h"

#include "cli/version.h"

#include <CLI/CLI.hpp>

#include <ostream>

namespace kv {
namespace {

/// What stands before the first `separa`, and what behind it.
std::pair<std::string, std::string> partirEn(const std::string& texto, const std::string& separa) {
    const auto en = texto.find(separa);
    if (en == std::string::npos) return {"", texto};
    return {texto.substr(0, en), texto.substr(en + separa.size())};
}

template <class Error>
bool es(const CLI::ParseError& e) {
    return dynamic_cast<const Error*>(&e) != nullptr;
}

} // namespace

void ponerEnCastellano(CLI::App& app) {
    app.option_defaults()->group("Opciones");
    for (const auto& [ingles, castellano] : {std::pair{"Usage", "Uso"},
                                             {"OPTIONS", "OPCIONES"},
                                             {"Excludes", "Excluye"},
                                             {"Needs", "Necesita"},
                                             {"SUBCOMMAND", "ORDEN"},
                                             {"SUBCOMMANDS", "ORDENES"},
                                             {"Positionals", "Argumentos"},
                                             {"REQUIRED", "OBLIGATORIO"},
                                             {"TEXT", "TEXTO"}})
        app.get_formatter()->label(ingles, castellano);
    app.get_formatter()->column_width(36);
    app.set_help_flag("-h,--help", "Muestra esta ayuda y termina");
    app.set_version_flag("--version", conVersion(app.get_name()), "Muestra la versión y termina");
}

int terminarLinea(const CLI::App& app, const CLI::ParseError& error, std::ostream& salida,
                  std::ostream& errores) {
    if (error.get_exit_code() != 0) return terminarLinea(app, enCastellano(error), errores);
    if (es<CLI::CallForVersion>(error))
        salida << error.what() << '\n';
    else
        salida << app.help();
    return 0;
}

int terminarLinea(const CLI::App& app, const std::string& queja, std::ostream& errores) {
    errores << app.get_name() << ": " << queja << "\nVea " << app.get_name() << " --help\n";
    return kMalaLinea;
}

std::string enCastellano(const CLI::ParseError& e) {
    std::string detalle = e.what();
    if (es<CLI::RequiresError>(e)) {
        const auto [uno, otro] = partirEn(detalle, " requires ");
        return uno + " necesita " + otro;
    }
    if (es<CLI::RequiredError>(e)) return "falta la orden o alguno de sus argumentos";
    if (es<CLI::ExtrasError>(e)) return "argumento desconocido: " + partirEn(detalle, ": ").second;
    if (es<CLI::ExcludesError>(e)) {
        const auto [uno, otro] = partirEn(detalle, " excludes ");
        return uno + " y " + otro + " no van juntos";
    }
    if (es<CLI::ArgumentMismatch>(e))
        return "a " + partirEn(detalle, ":").first + " le falta o le sobra un valor";
    if (es<CLI::ValidationError>(e)) return detalle; // the text is the validator's own
    return "valor no válido: " + partirEn(detalle, ": ").second;
}

} // namespace kv
