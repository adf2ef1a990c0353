// SPDX-License-Identifier: Apache-2.0
#include "operator/editor_de_guion.h"

#include "text/utf8.h"
#include "text/windows1252.h"
#include "vbscript/engine.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

/// A compilation asks nothing of the world.
class SinMundo final : public vbscript::Surroundings {
  public:
    std::int64_t monotonicMs() override { return 0; }
    vbscript::LocalTime wallClock() override { return {}; }
    int messageBox(std::string_view, int, std::string_view) override { return 1; }
    std::string inputBox(std::string_view, std::string_view, std::string_view) override {
        return {};
    }
};

FallaDeGuion desde(const vbscript::ScriptError& error) {
    return {error.line, error.column, enCastellano(error), error.description};
}

std::string conFinDeLinea(std::string_view texto) {
    std::string salida;
    salida.reserve(texto.size() + texto.size() / 16 + kFinDeLinea.size());
    while (!texto.empty()) {
        const auto fin = texto.find_first_of(kFinDeLinea);
        salida += texto.substr(0, fin);
        salida += kFinDeLinea;
        if (fin == std::string_view::npos) break;
        texto.remove_prefix(fin + (texto.substr(fin, 2) == kFinDeLinea ? 2 : 1));
    }
    return salida;
}

std::size_t largoDelCaracter(std::string_view texto) {
    std::size_t n = 1;
    while (n < texto.size() && esContinuacion(texto[n]))
        ++n;
    return n;
}

} // namespace

std::optional<std::string> EditorDeGuion::leer() {
    propia_ = conocida_ = {};
    if (ruta().empty()) return std::string();
    propia_ = conocida_ = archivos_.huella(ruta());
    const auto bytes = archivos_.leer(ruta(), kMaximoDelGuion);
    if (!bytes && propia_.existe) return std::nullopt;
    return bytes ? conFinDeLinea(utf8DesdeWindows1252(*bytes)) : std::string();
}

EditorDeGuion::Guardado EditorDeGuion::guardar(std::string_view texto) {
    if (ruta().empty()) return Guardado::SinRuta;
    std::string bytes = windows1252DesdeUtf8(texto);
    if (utf8DesdeWindows1252(bytes) != texto) return Guardado::CaracterAjeno;
    // As the engine's compiler will get it, in UTF-8.
    if (texto.size() + kFinDeLinea.size() > kMaximoDelGuion) return Guardado::DemasiadoLargo;
    bytes += kFinDeLinea;
    if (!archivos_.reemplazar(ruta(), bytes)) return Guardado::NoSePudo;
    propia_ = conocida_ = archivos_.huella(ruta());
    return Guardado::Hecho;
}

bool EditorDeGuion::cambioAfuera() const {
    return !ruta().empty() && archivos_.huella(ruta()) != conocida_;
}

std::optional<FallaDeGuion> EditorDeGuion::caracterAjeno(std::string_view texto) {
    const std::string vuelta = utf8DesdeWindows1252(windows1252DesdeUtf8(texto));
    int linea = 1;
    int columna = 1;
    for (std::size_t i = 0; i < texto.size(); ++columna) {
        const std::size_t n = largoDelCaracter(texto.substr(i));
        const std::string_view caracter = texto.substr(i, n);
        // Up to here both texts are the same, so the place is the same in both.
        if (vuelta.compare(i, n, caracter) != 0)
            return FallaDeGuion{linea, columna, std::string(caracter)};
        if (caracter == "\n") {
            ++linea;
            columna = 0;
        }
        i += n;
    }
    return std::nullopt;
}

std::optional<FallaDeGuion> EditorDeGuion::comprobar(std::string_view texto) {
    SinMundo mundo;
    vbscript::Engine motor(mundo);
    if (motor.check(texto)) return std::nullopt;
    vbscript::ScriptError error = motor.error();
    nombrarMarcaUtf8(texto, error);
    return desde(error);
}

/// A large plant's names are too many to be made at every key.
const DireccionesDePlanta& EditorDeGuion::planta() const {
    const std::pair ahora{tablas_.bloques.limiteSuperior(), tablas_.edicion()};
    if (ahora != enPlanta_) {
        planta_ = direccionesDe(tablas_);
        enPlanta_ = ahora;
    }
    return planta_;
}

std::vector<AvisoDeGuion> EditorDeGuion::avisos(std::string_view texto) const {
    std::vector<AvisoDeGuion> avisos = avisosDeGuion(texto, {&planta()});
    if (auto utf8 = avisoDeUtf8(windows1252DesdeUtf8(texto))) {
        avisos.push_back(std::move(*utf8));
        std::ranges::stable_sort(
            avisos, {}, [](const AvisoDeGuion& a) { return std::pair(a.linea, a.columna); });
    }
    return avisos;
}

Completado EditorDeGuion::completar(std::string_view antes, std::string_view despues) const {
    return completarGuion(antes, despues, planta());
}

std::optional<FallaDeGuion> EditorDeGuion::fallaDeLaCorrida() const {
    const vbscript::ScriptError* falla = guion_.falla(propia_);
    if (falla == nullptr) return std::nullopt;
    return desde(*falla);
}

std::optional<FallaDeGuion> EditorDeGuion::ultimaFalla() const {
    const vbscript::ScriptError* falla = guion_.falla();
    if (falla == nullptr) return std::nullopt;
    return desde(*falla);
}

} // namespace kv
