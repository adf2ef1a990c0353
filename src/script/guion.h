// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "log/archivo_log.h"
#include "platform/archivos.h"
#include "platform/bucle.h"
#include "script/ScriptControl.h"
#include "script/publicacion.h"
#include "view/vista.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace kv {

/// The path of the user script beside a driver configuration: every "mdriv" in the path, or else
/// every "ini", becomes "MDrivScrip", whatever the case of letters and wherever it stands. Empty
/// when the path holds neither.
[[nodiscard]] std::string rutaDelGuion(const std::string& rutaDeConfiguracion);

/// The plant engineer's script: loaded into the host and run after every answer.
class Guion {
  public:
    Guion(Bucle& bucle, Archivos& archivos, ScriptControl& control, Publicacion& publicacion,
          Vista& vista, Sucesos& sucesos, ArchivoLog& log);
    void fijarRuta(std::string ruta) { ruta_ = std::move(ruta); }
    [[nodiscard]] const std::string& ruta() const { return ruta_; }
    /// What the last run failed with; null when it did not.
    [[nodiscard]] const vbscript::ScriptError* falla() const { return falla_ ? &*falla_ : nullptr; }
    /// The same of the file's content with that mark; null also when the last run was of another.
    [[nodiscard]] const vbscript::ScriptError* falla(const HuellaDeArchivo& de) const {
        return falla_ && de == huella_ ? &*falla_ : nullptr;
    }
    /// Seconds after which a script that was stopped for taking too much is tried again, if its
    /// file does not change before.
    void fijarReintento(double segundos) {
        reintentoUs_ = static_cast<std::int64_t>(segundos * 1e6);
    }

    /// Adds the file's text to the host, which runs its statements; shows green or red; lets events
    /// run. A run that is asked for inside a run is made when that one has ended.
    void ejectutarScript();
    /// Called right before each run that is due, also where a stopped script rests.
    void alCorrer(std::function<void()> aviso) { alCorrer_ = std::move(aviso); }

  private:
    void correr();
    void empezarDeNuevo();
    void cargar(std::int64_t ahoraUs);
    void informar(const vbscript::ScriptError& error);
    [[nodiscard]] std::string textoDe(const vbscript::ScriptError& error) const;
    void decir(const std::string& que, const std::string& fuente);

    Bucle& bucle_;
    Archivos& archivos_;
    ScriptControl& control_;
    Publicacion& publicacion_;
    Vista& vista_;
    Sucesos& sucesos_;
    ArchivoLog& log_;
    std::string ruta_;
    std::string texto_;
    bool demasiadoLargo_ = false; ///< the file; `texto_` is empty then
    HuellaDeArchivo huella_;
    std::int64_t miradoUs_ = -1;
    std::int64_t reintentoUs_ = 0;
    std::int64_t detenidoHastaUs_ = -1; ///< not run before then: a budget stopped it
    std::optional<vbscript::ScriptError> falla_;
    std::set<std::string> dichos_; ///< errors of the present file that were reported
    std::function<void()> alCorrer_;
    bool detenido_ = false; ///< the last run failed, and it was reported
    bool ocioso_ = false;   ///< the last run was of nothing
    bool lleno_ = false;    ///< the last run was stopped for its memory
    bool corriendo_ = false;
    bool otraVez_ = false;
};

} // namespace kv
