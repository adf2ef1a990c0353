// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ini.h"
#include "config/problema.h"
#include "platform/trabajo.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// The keys of the driver's own section of the settings file.
[[nodiscard]] std::vector<std::string_view> clavesDeAjustes();

/// What a misspelt name may have been meant to be, as a question to be put behind it; empty when no
/// name is near.
[[nodiscard]] std::string talVez(std::string_view texto, std::span<const std::string_view> nombres);

/// What a file holds that means nothing, each name once with the line where it stands first, how
/// often it does, and the nearest known one. Its end writes
/// them down as problems.
class Desconocidas {
  public:
    /// Both must outlive it.
    Desconocidas(const std::string& archivo, Problemas& problemas)
        : archivo_(archivo), problemas_(problemas) {}
    ~Desconocidas();
    Desconocidas(const Desconocidas&) = delete;
    Desconocidas& operator=(const Desconocidas&) = delete;

    /// `clase` and `nombre` are what is the same however often it stands there; `escrito` is how it
    /// does for the first time.
    void hallada(std::string_view clase, std::string_view nombre, std::string_view escrito,
                 std::size_t linea, std::span<const std::string_view> conocidos);
    /// A line in a section that is no key; blank lines and comments are passed over.
    void sinIgual(const LineaIni& linea, std::string_view contenido);

  private:
    struct Hallada {
        std::string que;
        std::string talVez;
        std::size_t linea;
        std::size_t veces;
    };
    const std::string& archivo_;
    Problemas& problemas_;
    std::vector<Hallada> halladas_; ///< in the order of their lines
    std::map<std::string, std::size_t> cual_;
};

/// Tells the sections and keys of a settings file that mean nothing, and those that do not count
/// because they stand there a second time. `contenido` are the bytes of the file. Linear.
void revisarNombresDeAjustes(std::string_view contenido, const std::string& archivo,
                             Problemas& problemas);
void revisarRepetidasDeAjustes(std::string_view contenido, const std::string& archivo,
                               Problemas& problemas);
/// The fields of an export that mean nothing. All of them must outlive it.
Trabajo revisarNombresDeExportacion(std::string_view contenido, const std::string& archivo,
                                    Problemas& problemas, Porciones& porciones);

} // namespace kv
