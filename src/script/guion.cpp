#include "script/guion.h"

#include "text/texto.h"
#include "text/windows1252.h"

#include <utility>

namespace kv {
namespace {

constexpr std::size_t kMaximoDelGuion = 4U << 20;
constexpr std::int64_t kEntreMiradasUs = 1000;

} // namespace

std::string rutaDelGuion(const std::string& ruta) {
    constexpr std::string_view kExtension = "MDrivScrip";
    for (const std::string_view parte : {"mdriv", "ini"}) {
        if (buscarSinCaja(ruta, parte) != std::string::npos)
            return reemplazarSinCaja(ruta, parte, kExtension);
    }
    return {};
}

Guion::Guion(Bucle& bucle, Archivos& archivos, ScriptControl& control, Vista& vista)
    : bucle_(bucle), archivos_(archivos), control_(control), vista_(vista) {}

void Guion::ejectutarScript() {
    if (corriendo_) {
        otraVez_ = true;
        return;
    }
    corriendo_ = true;
    correr();
    if (std::exchange(otraVez_, false)) correr();
    corriendo_ = false;
    bucle_.dejarCorrerPendientes();
}

void Guion::correr() {
    cargar();
    control_.Clear();
    control_.AddCode(texto_);
    vista_.lblEstadoScript.colorear(control_.Number() != 0 ? Color::Rojo : Color::Verde);
}

void Guion::cargar() {
    if (ruta_.empty()) return;
    // Answers come in bursts, and a look at the file costs more than a short script.
    const std::int64_t ahora = bucle_.reloj().monotonicoUs();
    if (miradoUs_ >= 0 && ahora - miradoUs_ < kEntreMiradasUs) return;
    miradoUs_ = ahora;
    const HuellaDeArchivo huella = archivos_.huella(ruta_);
    if (huella == huella_) return;
    huella_ = huella;
    const auto bytes = archivos_.leer(ruta_, kMaximoDelGuion);
    texto_ = bytes ? utf8DesdeWindows1252(*bytes) : std::string();
    if (!texto_.empty() && texto_.back() != '\n') texto_ += "\r\n";
}

} // namespace kv
