#pragma once

#include "platform/archivos.h"
#include "platform/bucle.h"
#include "script/ScriptControl.h"
#include "ui/view/vista.h"

#include <string>

namespace kv {

/// The path of the user script beside a driver configuration: every "mdriv" in the path, or else
/// every "ini", becomes "MDrivScrip", whatever the case of letters and wherever it stands. Empty
/// when the path holds neither.
[[nodiscard]] std::string rutaDelGuion(const std::string& rutaDeConfiguracion);

/// The plant engineer's script: loaded into the host and run after every answer.
class Guion {
  public:
    Guion(Bucle& bucle, Archivos& archivos, ScriptControl& control, Vista& vista);
    void fijarRuta(std::string ruta) { ruta_ = std::move(ruta); }
    /// Adds the file's text to the host, which runs its statements; shows green or red; lets events
    /// run. A run that is asked for inside a run is made when that one has ended.
    void ejectutarScript();

  private:
    void correr();
    void cargar();

    Bucle& bucle_;
    Archivos& archivos_;
    ScriptControl& control_;
    Vista& vista_;
    std::string ruta_;
    std::string texto_;
    HuellaDeArchivo huella_;
    std::int64_t miradoUs_ = -1;
    bool corriendo_ = false;
    bool otraVez_ = false;
};

} // namespace kv
