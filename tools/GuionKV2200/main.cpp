#include "archivo.h"
#include "objetos.h"

#include "cli/castellano.h"
#include "cli/salida_entera.h"
#include "vbscript/engine.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

/// The desk: dialogs are printed and answered with what they propose.
class Escritorio : public vbscript::Surroundings {
  public:
    explicit Escritorio(std::string carpeta) : carpeta_(std::move(carpeta)) {}

    std::int64_t monotonicMs() override {
        const auto t = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(t).count();
    }

    vbscript::LocalTime wallClock() override {
        const auto ahora = std::chrono::system_clock::now();
        const auto segundos = std::chrono::floor<std::chrono::seconds>(ahora);
        const std::time_t t = std::chrono::system_clock::to_time_t(segundos);
        std::tm local{};
        localtime_r(&t, &local);
        const auto ms =
            std::chrono::duration_cast<std::chrono::milliseconds>(ahora - segundos).count();
        return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,       local.tm_hour,
                local.tm_min,         local.tm_sec,     static_cast<int>(ms)};
    }

    int messageBox(std::string_view texto, int, std::string_view) override {
        std::cout << "MsgBox: " << texto << '\n';
        return 1;
    }

    std::string inputBox(std::string_view texto, std::string_view,
                         std::string_view propuesto) override {
        std::cout << "InputBox: " << texto << '\n';
        return std::string(propuesto);
    }

    std::shared_ptr<vbscript::Disk> disk() override {
        return std::make_shared<vbscript::FolderDisk>(carpeta_);
    }

  private:
    std::string carpeta_;
};

void informar(const std::string& archivo, const vbscript::ScriptError& e) {
    std::cerr << archivo << '(' << e.line << ", " << e.column << "): " << e.description;
    if (!e.ranText.empty())
        std::cerr << ", at (" << e.ranLine << ", " << e.ranColumn
                  << ") of the text that is run there: " << e.ranText;
    std::cerr << '\n';
}

int correr(int argc, char** argv) {
    CLI::App app("Ejecuta un guion de planta en el escritorio, sin el driver.", "GuionKV2200");
    bool comprobar = false;
    std::string idioma = "es-AR";
    std::string archivo;
    kv::ponerEnCastellano(app);
    app.set_help_flag("-h,--help,--ayuda", "Muestra esta ayuda y termina"); // as it always was
    app.add_flag("--comprobar", comprobar, "Solo comprueba que el guion está bien escrito");
    app.add_option("--idioma", idioma,
                   "Cómo se escriben números y fechas: es-AR (si no se da) o en-US")
        ->type_name("PAIS")
        ->check([](const std::string& pais) {
            return pais == "es-AR" || pais == "en-US" ? "" : std::string("debe ser es-AR o en-US");
        });
    app.add_option("ARCHIVO", archivo, "El guion (Windows-1252 o UTF-8)")->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return kv::terminarLinea(app, e, 2, std::cout, std::cerr);
    }
    const auto texto = leerGuion(archivo);
    if (!texto) {
        std::cerr << archivo << ": no se puede leer\n";
        return 1;
    }
    std::error_code mal;
    auto carpeta = std::filesystem::absolute(archivo, mal).parent_path();
    Escritorio escritorio(carpeta.string());
    vbscript::Engine motor(escritorio);
    motor.setLocale(idioma);
    agregarObjetos(motor);
    const bool bien = comprobar ? motor.check(*texto) : motor.addCode(*texto);
    std::cout.flush();
    if (!bien) informar(archivo, motor.error());
    return bien ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failure that is told
    return kv::conSalidaEntera(correr(argc, argv), "GuionKV2200", std::cout, std::cerr);
}
