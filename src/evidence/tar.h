// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// Writes an archive of files (ustar). Its owner alone may read it, and nobody sees half of one: it
/// has its name once it is whole.
class Tar {
  public:
    /// `ahora`: seconds since 1970. Throws std::system_error when it cannot be made; so do the
    /// others when the disk does not take it.
    Tar(std::string ruta, std::int64_t ahora);
    ~Tar();
    Tar(const Tar&) = delete;
    Tar& operator=(const Tar&) = delete;

    /// Adds a file. Of a name what fits into a header is kept, 100 bytes.
    void agregar(const std::string& nombre, std::string_view contenido);
    /// Adds what lies on the disk, of which the last `maximo` bytes; how many that were. Of a file
    /// that grows, what there was at first; one that cannot be read is left out: -1.
    [[nodiscard]] std::int64_t agregarArchivo(const std::string& nombre, const std::string& ruta,
                                              std::uint64_t maximo);
    void terminar();

  private:
    void cabecera(const std::string& nombre, std::uint64_t largo, std::int64_t modificado);
    void escribir(std::string_view bytes) const;
    void rellenar(std::uint64_t largo) const;

    std::string ruta_;
    std::int64_t ahora_;   ///< of the files that are made: seconds since 1970
    std::string mientras_; ///< its name until it is whole
    int d_;
};

} // namespace kv
