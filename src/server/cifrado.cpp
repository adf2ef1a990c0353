// SPDX-License-Identifier: Apache-2.0
#include "server/cifrado.h"

#include <cmath>
#include <optional>

namespace kv {
namespace {

constexpr std::size_t kLargoDeClave = 20;
constexpr std::size_t kAntesDelRelleno = kLargoDeClave + 1;

bool esDigito(char c) { return c >= '0' && c <= '9'; }
int numeroDe(char c) { return c - '0'; }

char digitoAlAzar(const Azar& azar) {
    return static_cast<char>('0' + static_cast<int>(std::nearbyint(azar() * 8 + 1)));
}

std::string error(std::string_view que) {
    std::string texto(kErrorDeCifrado);
    return texto.append("\r\n").append(que);
}

/// The character of one whole unit (its length digit included), or nothing.
std::optional<char> caracterDeUnidad(std::string_view unidad, char digitoDeClave) {
    if (unidad.size() < 3) return std::nullopt; // length, d and at least one digit of v
    const int d = numeroDe(unidad[1]);
    if (!esDigito(unidad[1]) || d == 0) return std::nullopt;
    int v = 0; // seven digits at most
    for (const char c : unidad.substr(2)) {
        if (!esDigito(c)) return std::nullopt;
        v = v * 10 + numeroDe(c);
    }
    const double codigo = std::nearbyint(static_cast<double>(v) / d - digitoDeClave);
    if (!(codigo >= 0 && codigo <= 255)) return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(codigo));
}

} // namespace

std::string unidadDeCifrado(unsigned char caracter, char digitoDeClave, int d) {
    const std::string v = std::to_string((int{caracter} + digitoDeClave) * d);
    return std::to_string(3 + v.size()) + std::to_string(d) + v;
}

std::string cifrar(std::string_view texto, const Azar& azar) {
    std::string cifrado;
    for (std::size_t i = 0; i < kLargoDeClave; ++i)
        cifrado += digitoAlAzar(azar);
    const char relleno = digitoAlAzar(azar);
    cifrado += relleno;
    for (int i = 0; i < numeroDe(relleno); ++i)
        cifrado += digitoAlAzar(azar);
    for (const char c : texto)
        cifrado += unidadDeCifrado(static_cast<unsigned char>(c), cifrado.front(),
                                   numeroDe(digitoAlAzar(azar)));
    return cifrado;
}

std::string descifrar(std::string_view cifrado) {
    if (cifrado.size() < kAntesDelRelleno + 1) return error("texto demasiado corto");
    for (const char c : cifrado.substr(0, kAntesDelRelleno)) {
        if (!esDigito(c)) return error("la clave no es de digitos");
    }
    const auto relleno = static_cast<std::size_t>(numeroDe(cifrado[kLargoDeClave]));
    if (cifrado.size() < kAntesDelRelleno + relleno) return error("relleno incompleto");
    const std::string_view cuerpo = cifrado.substr(kAntesDelRelleno + relleno);
    std::string texto;
    // A single character left over at the end is no unit.
    for (std::size_t p = 0; p + 1 < cuerpo.size();) {
        if (!esDigito(cuerpo[p])) return error("largo de unidad que no es un digito");
        const int largo = numeroDe(cuerpo[p]) - 1;
        if (largo < 1 || cuerpo.size() - p < static_cast<std::size_t>(largo))
            return error("unidad incompleta");
        const auto c =
            caracterDeUnidad(cuerpo.substr(p, static_cast<std::size_t>(largo)), cifrado.front());
        if (!c) return error("unidad que no es de digitos");
        texto += *c;
        p += static_cast<std::size_t>(largo);
    }
    return texto;
}

std::string textoDeClave(std::string_view hora) {
    return std::string("Password:Lumo+725").append(hora);
}

} // namespace kv
