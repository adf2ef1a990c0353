// SPDX-License-Identifier: Apache-2.0
#include "script/guion.h"

#include "platform/ruta.h"
#include "script/errores.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"
#include "vbscript/surroundings/errors.h"

#include <utility>

namespace kv {
namespace {

constexpr std::int64_t kEntreMiradasUs = 1000;
constexpr std::size_t kErroresDichos = 100; // distinct errors reported of one content of the file

} // namespace

std::string rutaDelGuion(const std::string& ruta) {
    constexpr std::string_view kExtension = "MDrivScrip";
    for (const std::string_view parte : {"mdriv", "ini"}) {
        if (buscarSinCaja(ruta, parte) != std::string::npos)
            return reemplazarSinCaja(ruta, parte, kExtension);
    }
    return {};
}

Guion::Guion(Bucle& bucle, Archivos& archivos, ScriptControl& control, Publicacion& publicacion,
             Vista& vista, Sucesos& sucesos, ArchivoLog& log)
    : bucle_(bucle), archivos_(archivos), control_(control), publicacion_(publicacion),
      vista_(vista), sucesos_(sucesos), log_(log) {}

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
    if (alCorrer_) alCorrer_();
    const std::int64_t ahoraUs = bucle_.reloj().monotonicoUs();
    cargar(ahoraUs);
    if (ahoraUs < detenidoHastaUs_) return;
    detenidoHastaUs_ = -1;
    // Nothing to run is run once, which clears what the run before it left.
    if (std::exchange(ocioso_, texto_.empty()) && ocioso_) return;
    // What filled the memory is still in it: without this no run would ever get on again.
    if (std::exchange(lleno_, false)) {
        empezarDeNuevo();
        decir("El guion empieza de nuevo, sin sus variables: el anterior se quedó sin memoria", "");
    }
    control_.Clear();
    control_.AddCode(texto_);
    vbscript::ScriptError error = control_.Error();
    if (demasiadoLargo_) {
        error.number = vbscript::errors::textTooLarge;
        error.description = kGuionDemasiadoLargo.ingles;
    }
    nombrarMarcaUtf8(texto_, error);
    vista_.lblEstadoScript.colorear(error.number != 0 ? Color::Rojo : Color::Verde);
    falla_ = error.number != 0 ? std::optional(error) : std::nullopt;
    if (!falla_) {
        if (std::exchange(detenido_, false))
            sucesos_.decir({.que = Que::GuionSigue,
                            .detalle = static_cast<std::int16_t>(huella_.existe ? 0 : 1)});
        return;
    }
    lleno_ = error.budget && error.number == vbscript::errors::outOfMemory;
    if (error.budget) detenidoHastaUs_ = bucle_.reloj().monotonicoUs() + reintentoUs_;
    informar(error);
    if (!std::exchange(detenido_, true))
        sucesos_.decir(
            {.que = Que::GuionDetenido, .detalle = static_cast<std::int16_t>(error.budget ? 1 : 0)},
            textoDe(error));
}

void Guion::empezarDeNuevo() {
    control_.empezarDeNuevo();
    publicacion_.publicarTodoAlGuion();
}

std::string Guion::textoDe(const vbscript::ScriptError& error) const {
    const std::string lugar = error.line == 0 ? ""
                                              : "(" + textoDeNumero(error.line) + ", " +
                                                    textoDeNumero(error.column) + ")";
    return std::string(nombreDeRuta(ruta_)) + lugar + ": " + enCastellano(error) + " (" +
           textoDeNumero(error.number) + ")";
}

void Guion::informar(const vbscript::ScriptError& error) { decir(textoDe(error), error.source); }

void Guion::decir(const std::string& que, const std::string& fuente) {
    if (dichos_.size() >= kErroresDichos || !dichos_.insert(que).second) return;
    sucesos_.decir({.que = Que::FallaDelGuion}, que);
    log_.escribir({"DRIVER", "Guion", que, fuente, Novedad::FallaDelGuion});
}

void Guion::cargar(std::int64_t ahoraUs) {
    if (ruta_.empty()) return;
    // Answers come in bursts, and a look at the file costs more than a short script.
    if (miradoUs_ >= 0 && ahoraUs - miradoUs_ < kEntreMiradasUs) return;
    miradoUs_ = ahoraUs;
    const HuellaDeArchivo huella = archivos_.huella(ruta_);
    if (huella == huella_) return;
    const auto bytes = archivos_.leer(ruta_, kMaximoDelGuion);
    // A file that is there and cannot be read just now is looked at again at the next answer.
    if (!bytes && huella.existe && huella.largo <= kMaximoDelGuion) return;
    huella_ = huella;
    demasiadoLargo_ = !bytes && huella.existe;
    ocioso_ = false; // a new file without a text may fail, too: that is seen by running it
    std::string texto = bytes ? utf8DesdeWindows1252(*bytes) : std::string();
    if (!texto.empty() && texto.back() != '\n') texto += "\r\n";
    // Variables and procedures of another text would only be in the way of a new one.
    if (!texto_.empty() && texto != texto_) {
        empezarDeNuevo();
        lleno_ = false;
    }
    texto_ = std::move(texto);
    detenidoHastaUs_ = -1;
    falla_.reset();
    dichos_.clear();
}

} // namespace kv
