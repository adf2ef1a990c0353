// SPDX-License-Identifier: Apache-2.0
#include "operator/tramos_de_guion.h"

#include "plant/claves_de_bloque.h"
#include "vbscript/values/words.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace kv {
namespace {

constexpr std::size_t kPalabraMasLarga = 16;

std::string minuscula(std::u16string_view palabra) {
    std::string salida;
    for (const char16_t c : palabra)
        salida += static_cast<char>(c >= u'A' && c <= u'Z' ? c + 32 : c);
    return salida;
}

bool esReservada(const std::string& palabra) {
#define KV_PALABRA(p) minuscula(u## #p),
    // Some names belong to the language only in certain places; they are coloured everywhere.
    static const std::unordered_set<std::string> todas = {VBS_KEYWORDS(KV_PALABRA) "default",
                                                          "error",
                                                          "explicit",
                                                          "preserve",
                                                          "property",
                                                          "get",
                                                          "step"};
#undef KV_PALABRA
    return todas.contains(palabra);
}

bool esDigito(char16_t c) { return c >= u'0' && c <= u'9'; }
bool esLetra(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
bool esDeNombre(char16_t c) { return esLetra(c) || esDigito(c) || c == u'_'; }

class Lector {
  public:
    explicit Lector(std::u16string_view linea) : linea_(linea) {}

    std::vector<TramoDeGuion> leer() {
        while (i_ < linea_.size())
            paso();
        return std::move(tramos_);
    }

  private:
    [[nodiscard]] char16_t ver(std::size_t adelante = 0) const {
        return i_ + adelante < linea_.size() ? linea_[i_ + adelante] : u'\0';
    }
    void tramo(std::size_t hasta, ClaseDeTramo clase) {
        tramos_.push_back({i_, hasta - i_, clase});
        i_ = hasta;
    }
    [[nodiscard]] std::size_t finDe(bool (*es)(char16_t), std::size_t desde) const {
        while (desde < linea_.size() && es(linea_[desde]))
            ++desde;
        return desde;
    }
    /// After a quote, "" stands for one quote and goes on.
    [[nodiscard]] std::size_t finDelTexto() const {
        const std::size_t fin = linea_.find(u'"', i_ + 1);
        return fin == std::u16string_view::npos ? linea_.size() : fin + 1;
    }

    void paso() {
        const char16_t c = ver();
        const std::size_t antes = i_;
        const bool base =
            c == u'&' && (ver(1) == u'h' || ver(1) == u'H' || ver(1) == u'o' || ver(1) == u'O');
        if (c == u'\'') {
            tramo(linea_.size(), ClaseDeTramo::Comentario);
        } else if (c == u'"') {
            tramo(finDelTexto(), ClaseDeTramo::Texto);
        } else if (esLetra(c)) {
            palabra();
        } else if (esDigito(c) || (c == u'.' && esDigito(ver(1))) || (base && esDeNombre(ver(2)))) {
            numero(base);
        } else if (c == u'#') {
            const std::size_t fin = linea_.find(u'#', i_ + 1);
            if (fin == std::u16string_view::npos) {
                ++i_;
            } else {
                tramo(fin + 1, ClaseDeTramo::Numero);
            }
        } else {
            ++i_;
        }
        if (c != u' ' && c != u'\t') trasPunto_ = c == u'.' && i_ == antes + 1;
    }

    void numero(bool base) {
        std::size_t fin = base ? finDe(esDeNombre, i_ + 2) : finDe(esDigito, i_);
        if (!base && fin < linea_.size() && linea_[fin] == u'.') fin = finDe(esDigito, fin + 1);
        if (!base && fin < linea_.size() && (linea_[fin] == u'e' || linea_[fin] == u'E')) {
            std::size_t cifras = fin + 1;
            if (cifras < linea_.size() && (linea_[cifras] == u'-' || linea_[cifras] == u'+'))
                ++cifras;
            if (cifras < linea_.size() && esDigito(linea_[cifras])) fin = finDe(esDigito, cifras);
        }
        tramo(fin, ClaseDeTramo::Numero);
    }

    void palabra() {
        const std::size_t fin = finDe(esDeNombre, i_);
        const std::string p = minuscula(linea_.substr(i_, std::min(fin - i_, kPalabraMasLarga)));
        const bool entera = fin - i_ <= kPalabraMasLarga;
        // A member of an object may be named like anything.
        if (!trasPunto_) {
            if (entera && p == "rem") return tramo(linea_.size(), ClaseDeTramo::Comentario);
            if (pareceNombreDeScript(p)) return tramo(fin, ClaseDeTramo::Variable);
            if (entera && esReservada(p)) return tramo(fin, ClaseDeTramo::Palabra);
        }
        i_ = fin;
    }

    std::u16string_view linea_;
    std::size_t i_ = 0;
    bool trasPunto_ = false;
    std::vector<TramoDeGuion> tramos_;
};

} // namespace

std::vector<TramoDeGuion> tramosDeGuion(std::u16string_view linea) { return Lector(linea).leer(); }

} // namespace kv
