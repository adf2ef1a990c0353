// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/porque.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kv {

/// The same, by another one who speaks English.
inline PorQue enIngles(const PorQue& castellano) {
    PorQue otro = castellano;
    otro.hablarEn(Idioma::Ingles);
    return otro;
}

/// What a sentence tells beside words: how it stands, and times, addresses and figures, whose order
/// a language chooses.
inline std::vector<std::string> hechosDe(const std::string& frase) {
    std::vector<std::string> hechos{frase.starts_with("BAD")  ? "BAD"
                                    : frase.starts_with("OK") ? "OK"
                                                              : ""};
    std::string este;
    for (const char c : frase + ' ') {
        const bool cifra = c >= '0' && c <= '9';
        if (cifra || (!este.empty() && std::string_view(".:,/").find(c) != std::string::npos)) {
            este += c == ',' ? '.' : c;
            continue;
        }
        este.erase(este.find_last_not_of(".:/") + 1);
        if (!este.empty()) hechos.push_back(std::exchange(este, {}));
    }
    std::sort(hechos.begin() + 1, hechos.end());
    return hechos;
}

/// What is wrong with an English sentence beside its Spanish one; empty: nothing.
inline std::string loQueFallaEnIngles(const std::string& castellano, const std::string& ingles) {
    constexpr std::array kPalabras{" de ",    " desde ", " el ",  " en ",  " esta ", " hace ",
                                   " hasta ", " la ",    " las ", " lo ",  " los ",  " no se ",
                                   " por ",   " que ",   " se ",  " sin ", " su ",   " ya "};
    for (const char* palabra : kPalabras) {
        if ((' ' + ingles).find(palabra) != std::string::npos)
            return "Spanish is left in it: " + ingles;
    }
    if (hechosDe(castellano) == hechosDe(ingles)) return {};
    return "it says something else: " + castellano + " / " + ingles;
}

} // namespace kv
