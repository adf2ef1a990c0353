// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A value is never longer than this; what follows is cut off (characters of Windows-1252, which
/// are bytes of the file).
inline constexpr std::size_t kMaximoDeValor = 254;
/// A larger file is not read at all.
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
/// a name and the first key in it win. Memory beside the content is bounded whatever the file says.
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
    /// A section (`seccion` is then kNinguna) or a key of the section with that number.
    struct Entrada {
        std::uint32_t dispersion;
        std::uint32_t seccion;
        std::uint32_t inicio; ///< of its line
        std::uint32_t linea;
    };
    static constexpr std::uint32_t kNinguna = 0xFFFFFFFF;

    void indexar();
    bool crecer();
    [[nodiscard]] std::uint32_t encontrar(std::uint32_t seccion, std::string_view nombre) const;
    /// The entry's number, the new one's or that of the one that was there before; kNinguna when
    /// the index takes no more.
    std::uint32_t anotar(std::uint32_t seccion, const LineaIni& linea, bool& nueva);
    [[nodiscard]] LineaIni lineaDe(const Entrada& e) const;
    [[nodiscard]] std::optional<Hallazgo> recorrer(std::string_view seccion,
                                                   std::string_view clave) const;
    [[nodiscard]] std::optional<Hallazgo> recordar(std::string_view seccion,
                                                   std::string_view clave) const;

    std::string contenido_;
    std::vector<Entrada> entradas_;
    std::vector<std::uint32_t> lugares_; ///< open addressing: numbers of entries
    bool completo_ = true;               ///< the index covers the whole file
    /// What was looked for beyond the index: once through the file for every key, not every time.
    mutable std::map<std::string, std::optional<Hallazgo>> recordados_;
};

/// The content with the key set: an existing key is replaced in place, a new one goes to the end of
/// its section, a new section to the end of the file. Every other byte stays as it was, and the
/// file's own line ends are used. All texts are Windows-1252 and without line breaks.
[[nodiscard]] std::string iniConClave(std::string_view contenido, std::string_view seccion,
                                      std::string_view clave, std::string_view valor);

} // namespace kv
