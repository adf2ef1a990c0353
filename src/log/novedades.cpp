// SPDX-License-Identifier: Apache-2.0
#include "log/novedades.h"

#include "log/fichas_de_novedades.h"
#include "text/texto.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::string_view kPrefijo = "KV";

void renglones(std::string& a, std::string_view codigo, const Explicacion& e,
               const std::array<std::string_view, 3>& rotulos) {
    a.append(codigo).append(": ").append(e.titulo).append("\n");
    const std::array<std::string_view, 3> textos{e.causa, e.mirar, e.hacer};
    for (std::size_t i = 0; i < textos.size(); ++i)
        a.append("  ").append(rotulos[i]).append(": ").append(textos[i]).append("\n");
}

constexpr std::array<std::string_view, 3> kRotulos = {"Causa", "Qué mirar", "Qué hacer"};
constexpr std::array<std::string_view, 3> kRotulosEnIngles = {"Cause", "Check", "Remedy"};

} // namespace

std::span<const FichaDeNovedad> novedades() { return kFichas; }

const FichaDeNovedad* fichaDe(Novedad cual) {
    const auto f = std::find_if(kFichas.begin(), kFichas.end(),
                                [cual](const FichaDeNovedad& x) { return x.cual == cual; });
    return f == kFichas.end() ? nullptr : &*f;
}

std::string codigoDe(Novedad cual) {
    return std::string(kPrefijo) + std::to_string(static_cast<unsigned>(cual));
}

std::optional<Novedad> novedadDe(std::string_view codigo) {
    codigo = recortar(codigo);
    if (igualSinCaja(codigo.substr(0, kPrefijo.size()), kPrefijo))
        codigo.remove_prefix(kPrefijo.size());
    for (const FichaDeNovedad& f : kFichas) {
        if (codigo == std::string_view(codigoDe(f.cual)).substr(kPrefijo.size())) return f.cual;
    }
    return std::nullopt;
}

std::string explicacionDe(const FichaDeNovedad& ficha) {
    std::string a;
    renglones(a, codigoDe(ficha.cual), ficha.es, kRotulos);
    a += '\n';
    renglones(a, codigoDe(ficha.cual), ficha.en, kRotulosEnIngles);
    return a;
}

std::string referenciaDeNovedades() {
    std::string doc =
        "# Entradas del registro, por número\n\n"
        "Este documento se hace de la tabla que el programa usa; una prueba los compara. Lo que "
        "importa se anota en el registro del día con un número al final del renglón (`KV202`), y "
        "bajo systemd también en su diario, con los campos `KV_NUMERO`, `KV_CONEXION`, "
        "`KV_ESTACION`, `KV_BLOQUE`, `KV_MOTIVO` y `KV_CARPETA`: "
        "`journalctl KV_NUMERO=202`. `DriverKV2200 --explicar 202` dice lo mismo que está aquí. "
        "Lo que se repite sin parar se cuenta y no se repite.\n\n"
        "*What matters stands in the daily log with a number at the end of its line, and under "
        "systemd in its journal with fields. What repeats itself is counted.*\n";
    for (const FichaDeNovedad& f : kFichas) {
        doc += "\n## " + codigoDe(f.cual) + ": " + std::string(f.es.titulo) + "\n\n";
        doc += "- Causa: " + std::string(f.es.causa) + "\n- Qué mirar: " + std::string(f.es.mirar) +
               "\n- Qué hacer: " + std::string(f.es.hacer) + "\n\n";
        doc += "*" + std::string(f.en.titulo) + ". " + std::string(f.en.causa) +
               " Check: " + std::string(f.en.mirar) + " Remedy: " + std::string(f.en.hacer) + "*\n";
    }
    return doc + "\n<!-- SPDX-License-Identifier: Apache-2.0 -->\n";
}

} // namespace kv
