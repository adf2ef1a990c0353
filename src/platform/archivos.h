// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// What one look at a file tells without reading it: equal marks mean unchanged content.
struct HuellaDeArchivo {
    bool existe = false;
    std::int64_t modificadoNs = 0;
    std::uint64_t largo = 0;
    std::uint64_t identidad = 0;
    friend bool operator==(const HuellaDeArchivo&, const HuellaDeArchivo&) = default;
};

/// Files, by paths in which both "\" and "/" separate and the case of letters does not matter where
/// the exact name does not exist. No operation throws; failures are in the result. File names are
/// UTF-8, contents are bytes.
class Archivos {
  public:
    virtual ~Archivos() = default;
    /// The path as the system writes it, for a message by which a person finds the file.
    [[nodiscard]] virtual std::string comoEsta(const std::string& ruta) { return ruta; }
    /// True for anything whose attributes can be read, a folder and a link to nothing too.
    [[nodiscard]] virtual bool existe(const std::string& ruta) = 0;
    [[nodiscard]] virtual HuellaDeArchivo huella(const std::string& ruta) = 0;
    /// The whole content; nothing when it cannot be read or is larger than `maximo` bytes.
    [[nodiscard]] virtual std::optional<std::string> leer(const std::string& ruta,
                                                          std::size_t maximo) = 0;
    /// Replaces the content so that a reader sees the old or the new file, whole, also after an end
    /// of the process at any moment. Owner, group and mode stay. A file that cannot be replaced
    /// (mounted, another's, in a folder that may not be written to) is written over in its place.
    /// False too while another process is replacing it, and for what is there and is no file.
    virtual bool reemplazar(const std::string& ruta, std::string_view contenido) = 0;
    /// Opens for appending, writes whole lines in one piece, closes. A last line that an end in the
    /// middle of writing left without its end gets it first, so that it spoils no other one.
    virtual bool agregar(const std::string& ruta, std::string_view lineas) = 0;
    virtual bool crearCarpeta(const std::string& ruta) = 0;
};

/// What it took to read a file, as `Porciones` count: some 2 bytes a nanosecond.
[[nodiscard]] inline std::int64_t costoDeLeer(std::string_view contenido) {
    return static_cast<std::int64_t>(contenido.size() / 200);
}

} // namespace kv
