// SPDX-License-Identifier: Apache-2.0
#include "text/json_leido.h"

#include "text/json.h"
#include "text/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_set>

namespace kv {

std::optional<bool> Json::logico() const {
    return clase_ == Clase::Logico ? std::optional(logico_) : std::nullopt;
}
std::optional<double> Json::numero() const {
    return clase_ == Clase::Numero ? std::optional(numero_) : std::nullopt;
}
const std::string* Json::texto() const { return clase_ == Clase::Texto ? &texto_ : nullptr; }

const Json* Json::miembro(std::string_view nombre) const {
    const auto i = std::find(nombres_.begin(), nombres_.end(), nombre);
    return i == nombres_.end() ? nullptr
                               : &elementos_[static_cast<std::size_t>(i - nombres_.begin())];
}

std::string Json::comoJson() const { return clase_ == Clase::Texto ? enJson(texto_) : texto_; }

/// One pass over the text. The first fault ends it.
class LectorDeJson {
  public:
    explicit LectorDeJson(std::string_view texto) : t_(texto) {}
    [[nodiscard]] bool todo(Json& j) {
        if (!valor(j, 0)) return false;
        blancos();
        return i_ == t_.size() || mal("sobra texto detras del valor");
    }
    [[nodiscard]] std::string falla() const {
        return "columna " + std::to_string(i_ + 1) + ": " + falla_;
    }

  private:
    bool mal(std::string_view que) {
        if (falla_.empty()) falla_ = que;
        return false;
    }
    [[nodiscard]] char c() const { return i_ < t_.size() ? t_[i_] : '\0'; }
    void blancos() {
        while (i_ < t_.size() && std::string_view(" \t\r\n").find(t_[i_]) != std::string_view::npos)
            ++i_;
    }
    [[nodiscard]] bool toma(char esperado) {
        blancos();
        if (i_ >= t_.size() || t_[i_] != esperado) return false;
        ++i_;
        return true;
    }
    bool valor(Json& j, int hondura);
    bool lista(Json& j, int hondura);
    bool objeto(Json& j, int hondura);
    bool numero(Json& j);
    bool texto(std::string& destino);
    bool escape(std::string& destino);
    bool caracter(std::string& destino);
    bool cuatroCifras(std::uint32_t& n);
    bool palabra(std::string_view cual) {
        if (!t_.substr(i_).starts_with(cual)) return mal("no es un valor de JSON");
        i_ += cual.size();
        return true;
    }
    std::size_t cifras() {
        const std::size_t desde = i_;
        while (c() >= '0' && c() <= '9')
            ++i_;
        return i_ - desde;
    }

    std::string_view t_;
    std::size_t i_ = 0;
    std::string falla_;
};

bool LectorDeJson::valor(Json& j, int hondura) {
    if (hondura > kHonduraDeJson) return mal("demasiados valores uno dentro de otro");
    blancos();
    switch (c()) {
    case '{':
        return objeto(j, hondura);
    case '[':
        return lista(j, hondura);
    case '"':
        j.clase_ = Json::Clase::Texto;
        return texto(j.texto_);
    case 't':
    case 'f':
        j.clase_ = Json::Clase::Logico;
        j.logico_ = c() == 't';
        return palabra(j.logico_ ? "true" : "false");
    case 'n':
        return palabra("null");
    default:
        return numero(j);
    }
}

bool LectorDeJson::lista(Json& j, int hondura) {
    j.clase_ = Json::Clase::Lista;
    ++i_;
    if (toma(']')) return true;
    do {
        if (!valor(j.elementos_.emplace_back(), hondura + 1)) return false;
    } while (toma(','));
    return toma(']') || mal("falta una coma o ]");
}

bool LectorDeJson::objeto(Json& j, int hondura) {
    j.clase_ = Json::Clase::Objeto;
    ++i_;
    if (toma('}')) return true;
    std::unordered_set<std::string> vistos;
    do {
        blancos();
        std::string& nombre = j.nombres_.emplace_back();
        if (c() != '"') return mal("falta el nombre de un miembro, entre comillas");
        if (!texto(nombre)) return false;
        if (!vistos.insert(nombre).second) return mal("un nombre esta dos veces");
        if (!toma(':')) return mal("falta :");
        if (!valor(j.elementos_.emplace_back(), hondura + 1)) return false;
    } while (toma(','));
    return toma('}') || mal("falta una coma o }");
}

bool LectorDeJson::numero(Json& j) {
    const std::size_t desde = i_;
    if (c() == '-') ++i_;
    const bool cero = c() == '0';
    const std::size_t enteras = cifras();
    if (enteras == 0) return mal("no es un valor de JSON");
    if (cero && enteras > 1) return mal("un numero no empieza con 0");
    if (c() == '.') {
        ++i_;
        if (cifras() == 0) return mal("faltan cifras");
    }
    if (c() == 'e' || c() == 'E') {
        ++i_;
        if (c() == '+' || c() == '-') ++i_;
        if (cifras() == 0) return mal("faltan cifras");
    }
    j.clase_ = Json::Clase::Numero;
    j.texto_ = t_.substr(desde, i_ - desde);
    const auto leido = std::from_chars(t_.data() + desde, t_.data() + i_, j.numero_);
    return (leido.ec == std::errc() && std::isfinite(j.numero_)) || mal("el numero no cabe");
}

bool LectorDeJson::texto(std::string& destino) {
    ++i_;
    while (i_ < t_.size() && c() != '"') {
        if (c() == '\\' ? !escape(destino) : !caracter(destino)) return false;
    }
    if (i_ >= t_.size()) return mal("faltan las comillas del final");
    ++i_;
    return true;
}

bool LectorDeJson::cuatroCifras(std::uint32_t& n) {
    const std::string_view s = t_.substr(i_, 4);
    const auto leido = std::from_chars(s.data(), s.data() + s.size(), n, 16);
    if (s.size() < 4 || leido.ec != std::errc() || leido.ptr != s.data() + 4)
        return mal("detras de \\u van cuatro cifras hexadecimales");
    i_ += 4;
    return true;
}

bool LectorDeJson::escape(std::string& destino) {
    constexpr std::string_view kLetras = "\"\\/bfnrt";
    constexpr std::string_view kSonido = "\"\\/\b\f\n\r\t";
    ++i_;
    const std::size_t cual = i_ < t_.size() ? kLetras.find(c()) : std::string_view::npos;
    if (cual != std::string_view::npos) {
        destino += kSonido[cual];
        ++i_;
        return true;
    }
    if (c() != 'u') return mal("detras de \\ no va eso");
    ++i_;
    std::uint32_t n = 0;
    if (!cuatroCifras(n)) return false;
    if (n >= 0xD800 && n < 0xDC00 && t_.substr(i_).starts_with("\\u")) {
        i_ += 2;
        std::uint32_t baja = 0;
        if (!cuatroCifras(baja)) return false;
        if (baja < 0xDC00 || baja > 0xDFFF) return mal("media letra");
        n = 0x10000 + ((n - 0xD800) << 10) + (baja - 0xDC00);
    }
    if (n >= 0xD800 && n < 0xE000) return mal("media letra");
    agregarUtf8(destino, n);
    return true;
}

/// One character of UTF-8 as it stands.
bool LectorDeJson::caracter(std::string& destino) {
    const auto primero = static_cast<unsigned char>(c());
    if (primero < 0x20) return mal("un texto no tiene caracteres de control");
    const std::size_t largo = leerUtf8(t_, i_).largo;
    if (largo == 0) return mal("los bytes no son UTF-8");
    destino.append(t_.substr(i_, largo));
    i_ += largo;
    return true;
}

std::optional<Json> leerJson(std::string_view texto, std::string& falla) {
    Json j;
    LectorDeJson lector(texto);
    if (lector.todo(j)) return j;
    falla = lector.falla();
    return std::nullopt;
}

} // namespace kv
