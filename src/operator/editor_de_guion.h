// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/completado.h"
#include "plant/tablas.h"
#include "platform/archivos.h"
#include "platform/ruta.h"
#include "script/ScriptControl.h"
#include "script/avisos.h"
#include "script/errores.h"
#include "script/guion.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A place of the script and what is wrong there. Line and column count from 1; 0: unknown.
struct FallaDeGuion {
    int linea = 0;
    int columna = 0;
    std::string descripcion;
    std::string enIngles = {}; ///< as the language says it; empty for what the language did not say
    friend bool operator==(const FallaDeGuion&, const FallaDeGuion&) = default;
};

/// The script editor without its window: it reads and saves the file that the engine runs, and
/// never runs it. Texts are UTF-8. One window at a time.
class EditorDeGuion {
  public:
    /// All must outlive it.
    EditorDeGuion(Archivos& archivos, const Guion& guion, const ScriptControl& control,
                  const Tablas& tablas)
        : archivos_(archivos), guion_(guion), control_(control), tablas_(tablas) {}

    /// Empty when the driver's configuration has no place for a script.
    [[nodiscard]] const std::string& ruta() const { return guion_.ruta(); }
    /// The file's name without its folder.
    [[nodiscard]] std::string_view nombre() const { return nombreDeRuta(ruta()); }
    /// The script, each line followed by CR LF; a missing file is an empty text. Nothing when there
    /// is a file that cannot be read, or is larger than any script: saving would destroy it.
    [[nodiscard]] std::optional<std::string> leer();
    /// Whether what was read last is larger than any script.
    [[nodiscard]] bool eraDemasiadoLargo() const { return propia_.largo > kMaximoDelGuion; }

    /// What a text is that the engine would not run, as too long.
    static constexpr Frase kDemasiadoLargo = kGuionDemasiadoLargo;
    enum class Guardado { Hecho, SinRuta, CaracterAjeno, DemasiadoLargo, NoSePudo };
    /// Replaces the file's content with `texto` and a CR LF. Unless the answer is `Hecho`, the file
    /// is as it was.
    [[nodiscard]] Guardado guardar(std::string_view texto);
    /// Whether another program changed the file since it was read or saved here.
    [[nodiscard]] bool cambioAfuera() const;
    /// What others have written so far is known, and not wanted.
    void pasarPorAltoElCambio() { conocida_ = archivos_.huella(ruta()); }

    /// The first character that the file's code page does not have.
    [[nodiscard]] static std::optional<FallaDeGuion> caracterAjeno(std::string_view texto);
    /// The first mistake that a compilation finds.
    [[nodiscard]] static std::optional<FallaDeGuion> comprobar(std::string_view texto);
    /// What in a text that compiles is hardly meant, against the plant as it is now; and that the
    /// file is UTF-8. By place.
    [[nodiscard]] std::vector<AvisoDeGuion> avisos(std::string_view texto) const;
    /// How the name could go on at whose end the cursor is, between the two parts of a text.
    [[nodiscard]] Completado completar(std::string_view antes, std::string_view despues) const;
    /// What a global variable of the script holds since the last run, for people.
    [[nodiscard]] std::optional<std::string> valorDe(std::string_view nombre) const {
        return control_.valorVisibleDe(nombre);
    }
    /// What the last run took.
    [[nodiscard]] std::optional<ScriptControl::Medida> ultimaCorrida() const {
        return control_.ultimaCorrida();
    }
    /// What the last run failed with, as long as it was of the text that was read or saved here.
    [[nodiscard]] std::optional<FallaDeGuion> fallaDeLaCorrida() const;
    /// The same of whatever text it was.
    [[nodiscard]] std::optional<FallaDeGuion> ultimaFalla() const;

  private:
    [[nodiscard]] const DireccionesDePlanta& planta() const;

    Archivos& archivos_;
    const Guion& guion_;
    const ScriptControl& control_;
    const Tablas& tablas_;
    mutable DireccionesDePlanta planta_;
    /// When it was made: how many blocks there were, and which edition of the tables it was.
    mutable std::pair<std::size_t, std::uint64_t> enPlanta_{0, 0};
    HuellaDeArchivo propia_;   ///< the file as it was read or saved here
    HuellaDeArchivo conocida_; ///< the newest that the user knows of
};

} // namespace kv
