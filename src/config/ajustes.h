// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ini.h"
#include "config/tabla_de_ajustes.h"
#include "platform/archivos.h"
#include "platform/reloj.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace kv {

inline constexpr std::string_view kArchivoDeAjustes = "sis_config.ini";
/// A larger file is not taken for one of settings.
inline constexpr std::size_t kMaximoDeAjustes = std::size_t{4} << 20;
/// So long a settings file must have stayed the same before what it lacks counts as taken out: it
/// may be half copied.
inline constexpr std::int64_t kSegundaMiradaMs = 5000;

/// Called once for every bad text of a setting: with the setting, the text, and the number used
/// instead.
using AvisoDeAjuste =
    std::function<void(std::string_view clave, const std::string& texto, double usado)>;
/// As the log says it.
[[nodiscard]] std::string enElLog(std::string_view clave, const std::string& texto, double usado);

/// Why a content cannot be a whole settings file, after "el archivo"; nothing for one that can.
/// `antes` is the last one that could: a beginning of it without a line end is cut off.
[[nodiscard]] std::string_view defectoDeAjustes(std::string_view contenido, std::string_view antes);

/// The settings of the driver and every other INI file. Files are parsed once per content, and
/// looked at once per turn of the loop; what another program writes is seen in the next turn. Texts
/// are UTF-8, files Windows-1252. Nothing throws.
///
/// A settings file that goes, or that cannot be a whole one any more, still says what it said, and
/// nothing is written to it: it may be on its way, and what it said may have closed a door. A
/// missing one is made only if it was missing from the start.
class Ajustes {
  public:
    /// `archivos` and `reloj` must outlive this object. Without a clock every settings file counts
    /// as one that has long stayed the same.
    Ajustes(Archivos& archivos, std::string carpetaDelPrograma, const Reloj* reloj = nullptr);

    /// `porDefecto` when the file, the section or the key is missing; a value is cut to 254
    /// characters.
    [[nodiscard]] std::string leerIni(const std::string& archivo, std::string_view seccion,
                                      std::string_view clave, std::string_view porDefecto);
    /// Creates file, section and key as needed; line breaks become blanks. Failures are ignored,
    /// and a file that exists but cannot be read, or is no text of Windows-1252, is left alone.
    void escribirIni(const std::string& archivo, std::string_view seccion, std::string_view clave,
                     std::string_view valor);
    /// A key of the settings file; one that is missing or empty is written with its default.
    [[nodiscard]] std::string leerConfiguracion(std::string_view clave,
                                                std::string_view porDefecto);
    [[nodiscard]] std::string leerConfiguracion(const AjusteDeTexto& ajuste) {
        return leerConfiguracion(ajuste.clave, ajuste.porDefecto);
    }
    void escribirConfiguracion(std::string_view clave, std::string_view valor);
    [[nodiscard]] bool existeArchivo(const std::string& ruta);

    /// The setting's number. A text that is no number or lies outside the range gives the last good
    /// number, else the default, and `avisar`, which may be empty, is called once for it.
    [[nodiscard]] double leerNumero(const AjusteNumerico& ajuste, const AvisoDeAjuste& avisar);

    /// Line of a value, 0 if it is missing.
    [[nodiscard]] std::size_t lineaDe(const std::string& archivo, std::string_view seccion,
                                      std::string_view clave);

    /// What is wrong with the settings file as a whole, as it is now; empty if nothing is, or if it
    /// has been missing from the start.
    [[nodiscard]] std::string_view defecto();
    /// Whether it is known what the settings are: a whole file was read, or the file has been
    /// missing since the program began.
    [[nodiscard]] bool conocidos();
    /// Whether what the file lacks may count as taken out of it.
    [[nodiscard]] bool asentados();
    /// The last whole content, else what there is; `cambios` counts the whole ones.
    [[nodiscard]] const std::string& contenido();
    [[nodiscard]] std::uint64_t cambios();
    /// To be called at the end of every turn of the loop: allows the next look at the files.
    void vueltaNueva() { ++vuelta_; }
    /// From now on nothing is written, as on a read-only disk.
    void noEscribir() { escribe_ = false; }

    [[nodiscard]] const std::string& carpeta() const { return carpeta_; }
    [[nodiscard]] const std::string& archivoDeAjustes() const { return archivoDeAjustes_; }
    [[nodiscard]] Archivos& archivos() { return archivos_; }

  private:
    struct Copia {
        HuellaDeArchivo huella;
        Ini ini;
        std::uint64_t mirada = 0; ///< the turn of the last look
        bool valida = false;
        bool leida = false; ///< false: could not be read, which is tried again every turn
    };
    /// What is known of the settings file.
    enum class Saber : std::uint8_t { Nada, NuncaHubo, Hubo };
    struct Numero {
        double ultimoBueno = 0;
        std::string malo; ///< the bad text that was reported last
    };

    [[nodiscard]] const Copia& copia(const std::string& archivo);
    void adoptar(Copia& c, std::optional<std::string> contenido);
    [[nodiscard]] bool esDeAjustes(std::string_view archivo) const;
    [[nodiscard]] const Copia& ajustes() { return copia(archivoDeAjustes_); }
    bool intentarEscribir(const std::string& archivo, std::string_view seccion,
                          std::string_view clave, std::string_view valor);

    Archivos& archivos_;
    const Reloj* reloj_;
    std::string carpeta_;
    std::string archivoDeAjustes_;
    std::map<std::string, Copia, std::less<>> copias_;
    std::map<std::string, Numero, std::less<>> numeros_;
    /// Defaults that could not be written back to the settings file with the mark below: tried
    /// again when the file changes.
    std::set<std::string, std::less<>> negados_;
    HuellaDeArchivo huellaNegada_;
    std::uint64_t vuelta_ = 1;
    bool escribe_ = true;

    Saber saber_ = Saber::Nada;
    std::string_view defecto_;  ///< of the settings file at the last look
    bool entero_ = false;       ///< a whole one was read
    std::uint64_t cambios_ = 0; ///< whole contents so far
    bool asentados_ = true;     ///< the content has stayed the same for long enough
    std::int64_t cambioMs_ = 0; ///< when it last did not
    std::string escrito_;       ///< what we made of a content that had stayed the same
};

} // namespace kv
