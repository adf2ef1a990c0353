// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kv {

/// A fault in a file of the field, for the engineer who will mend it: where it is, what it is and
/// what happens because of it. Texts are Spanish, in UTF-8.
struct Problema {
    std::string archivo;
    std::size_t linea = 0; ///< counted from 1; 0 when the whole file is meant
    std::string que;
    std::string consecuencia;
    std::string_view campo = {}; ///< the table's column at fault, where it is one; lives forever
};

/// The problems found, in the order in which they were found. The first thousand are kept, the
/// others only counted.
class Problemas {
  public:
    static constexpr std::size_t kMaximo = 1000;
    void agregar(std::string_view archivo, std::size_t linea, std::string que,
                 std::string consecuencia, std::string_view campo = {});
    void agregar(const Problemas& otros);
    [[nodiscard]] const std::vector<Problema>& lista() const { return lista_; }
    /// How many were found beyond those kept.
    [[nodiscard]] std::size_t demas() const { return demas_; }
    [[nodiscard]] bool ninguno() const { return lista_.empty(); }

  private:
    std::vector<Problema> lista_;
    std::size_t demas_ = 0;
};

/// The faults of a configuration, to tell which of the next one's are new. Lines do not tell faults
/// apart: they move when others are put before them.
class ProblemasConocidos {
  public:
    /// The faults, and what in it means nothing.
    void conocer(const Problemas& problemas, const Problemas& ignoradas = {});
    /// Those that are new, or that there are more of; in their order. Of those beyond the limit of
    /// `Problemas` it cannot be known.
    [[nodiscard]] std::vector<Problema> nuevos(const Problemas& problemas) const;

  private:
    std::unordered_map<std::string, std::size_t> veces_; ///< how often there is each
};

/// "FILE:LINE: what; consequence".
[[nodiscard]] std::string textoDeProblema(const Problema& problema);

/// A path as this machine writes it, whatever separates its folders where it comes from.
[[nodiscard]] std::string rutaLegible(std::string_view ruta);

/// A number as people read it, with a decimal comma.
[[nodiscard]] std::string conComa(double numero);

/// Bytes of a field file as a message quotes them: in quotes, in UTF-8, at most 60 characters, none
/// of them a control character.
[[nodiscard]] std::string citar(std::string_view bytes);
/// The same of a text.
[[nodiscard]] std::string citarUtf8(std::string_view utf8);
/// The same without the quotes.
[[nodiscard]] inline std::string sinComillas(std::string_view utf8) {
    const std::string cita = citarUtf8(utf8);
    return cita.substr(1, cita.size() - 2);
}

} // namespace kv
