// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// The languages in which the driver explains itself to people. What other programs and the plant's
/// own papers read is Spanish always.
enum class Idioma : std::uint8_t { Castellano, Ingles };

/// What is said, in both languages; "%1" to "%9" stand for what it is said of. One that lacks a
/// language, or says in one what it does not say in the other, does not compile.
struct Frase {
    std::string_view castellano, ingles;

    constexpr Frase(std::string_view enCastellano, std::string_view enIngles)
        : castellano(enCastellano), ingles(enIngles) {
        if (castellano.empty() || ingles.empty() || huecos(castellano) != huecos(ingles))
            throw "a phrase has both languages, and the same places in them";
    }
    [[nodiscard]] constexpr std::string_view en(Idioma idioma) const {
        return idioma == Idioma::Ingles ? ingles : castellano;
    }

  private:
    /// A bit for each of "%1" to "%9".
    static constexpr unsigned huecos(std::string_view texto) {
        unsigned cuales = 0;
        for (std::size_t i = 0; i + 1 < texto.size(); ++i) {
            if (texto[i] == '%' && texto[i + 1] >= '1' && texto[i + 1] <= '9')
                cuales |= 1U << static_cast<unsigned>(texto[i + 1] - '0');
        }
        return cuales;
    }
};

/// Rows of a table of phrases, each of what it says: in their order, and all of them.
template <class Cual>
struct FraseDe {
    Cual cual;
    Frase frase;
};
template <class Cual>
FraseDe(Cual, Frase) -> FraseDe<Cual>; // older compilers deduce no aggregate

template <class Tabla, class Cual>
constexpr bool enOrden(const Tabla& filas, Cual ultimo) {
    for (std::size_t i = 0; i < filas.size(); ++i) {
        if (static_cast<std::size_t>(filas[i].cual) != i) return false;
    }
    return filas.size() == static_cast<std::size_t>(ultimo) + 1;
}

/// The phrase with the parts in their places. What a part holds is never taken for a place.
[[nodiscard]] std::string decir(const Frase& frase, Idioma idioma,
                                std::initializer_list<std::string_view> partes = {});
/// A text that was made in Spanish of the phrase and at most one part, in another language; nothing
/// for one that was not.
[[nodiscard]] std::optional<std::string> pasarA(Idioma idioma, const Frase& frase,
                                                std::string_view castellano);
/// The same for one that was made of any phrase of a table. A text that was made of no phrase stays
/// as it is: the system's own words, a person's name.
template <class Tabla>
[[nodiscard]] std::string pasarA(Idioma idioma, const Tabla& filas, std::string_view castellano) {
    for (const auto& fila : filas) {
        if (auto texto = pasarA(idioma, fila.frase, castellano)) return *texto;
    }
    return std::string(castellano);
}

} // namespace kv
