// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A value is never longer than this; what follows is cut off (characters of Windows-1252, which
/// are bytes of the file).
inline constexpr std::size_t kMaximoDeValor = 254;
/// A larger configuration is not read at all.
inline constexpr std::size_t kMaximoDeArchivo = 256UL * 1024 * 1024;

/// A line of an INI file. All texts are views into the file's bytes.
struct LineaIni {
    enum class Clase : std::uint8_t { Otra, Seccion, Clave };
    Clase clase = Clase::Otra;
    std::string_view nombre;       ///< of the section or the key, without blanks around it
    std::string_view valor;        ///< without blanks and quotes, cut to its maximum
    std::size_t numero = 0;        ///< counted from 1
    std::size_t inicio = 0;        ///< position of the line's first byte
    std::size_t inicioDeValor = 0; ///< position after "=" and the blanks that follow it
    std::size_t finDeTexto = 0;    ///< position of the line end
    std::size_t fin = 0;           ///< position of the next line
};

/// Goes through the lines of an INI file one after another: linear, copies nothing.
class LectorIni {
  public:
    /// `contenido` must outlive the reader.
    explicit LectorIni(std::string_view contenido, std::size_t desde = 0, std::size_t linea = 0);
    /// False at the end of the file.
    bool siguiente();
    [[nodiscard]] const LineaIni& linea() const { return linea_; }

  private:
    std::string_view contenido_;
    LineaIni linea_;
};

/// A parsed INI file. Sections and keys are found whatever their letter case; the first section of
/// a name and the first key in it win. Beside the content it takes 16 bytes a key.
class Ini {
  public:
    struct Hallazgo {
        std::string_view valor; ///< bytes of the file, valid as long as this object
        std::size_t linea = 0;
    };

    Ini() = default;
    explicit Ini(std::string contenido);
    Ini(Ini&&) = default;
    Ini& operator=(Ini&&) = default;
    Ini(const Ini&) = delete; // what was found points into the content
    Ini& operator=(const Ini&) = delete;
    ~Ini() = default;

    [[nodiscard]] std::optional<Hallazgo> buscar(std::string_view seccion,
                                                 std::string_view clave) const;
    [[nodiscard]] const std::string& contenido() const { return contenido_; }

  private:
    /// A section (`seccion` is then kNinguna, and its own number `linea`), or a key of one.
    struct Entrada {
        std::uint32_t seccion;
        std::uint32_t inicio; ///< of its name
        std::uint32_t largo;  ///< of its name
        std::uint32_t linea;
    };
    static constexpr std::uint32_t kNinguna = 0xFFFFFFFF;

    [[nodiscard]] std::string_view nombreDe(const Entrada& e) const {
        return std::string_view(contenido_).substr(e.inicio, e.largo);
    }
    /// Null when the file has no such entry.
    [[nodiscard]] const Entrada* encontrar(std::uint32_t seccion, std::string_view nombre) const;

    std::string contenido_;
    std::vector<Entrada> entradas_; ///< sorted by section, name, place
};

/// The content with the key set: an existing key is replaced in place, a new one goes to the end of
/// its section, a new section to the end of the file. Every other byte stays as it was, and the
/// file's own line ends are used. All texts are Windows-1252 and without line breaks.
[[nodiscard]] std::string iniConClave(std::string_view contenido, std::string_view seccion,
                                      std::string_view clave, std::string_view valor);

} // namespace kv
