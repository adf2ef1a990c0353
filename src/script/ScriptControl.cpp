#include "script/ScriptControl.h"

#include "text/numeros.h"
#include "text/texto.h"

namespace kv {
namespace {

constexpr int kErrorDeSintaxis = 1002;
constexpr std::size_t kLargoDeNombre = 255;

bool esLetra(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool esIdentificador(std::string_view n) {
    if (n.empty() || n.size() > kLargoDeNombre || !esLetra(n.front())) return false;
    for (const char c : n) {
        if (!esLetra(c) && c != '_' && (c < '0' || c > '9')) return false;
    }
    return true;
}

} // namespace

std::optional<Indice> ScriptControl::ranura(std::string_view nombre) {
    if (!esIdentificador(nombre)) return std::nullopt;
    const auto [i, nueva] =
        nombres_.try_emplace(minusculas(nombre), static_cast<Indice>(valores_.size()));
    if (nueva) valores_.push_back(0);
    return i->second;
}

std::optional<double> ScriptControl::valorDe(std::string_view nombre) const {
    const auto i = nombres_.find(minusculas(nombre));
    if (i == nombres_.end()) return std::nullopt;
    return valores_[i->second];
}

void ScriptControl::AddCode(std::string_view texto) {
    for (std::string_view linea : partir(texto, '\n')) {
        linea = recortar(linea.substr(0, linea.find('\'')));
        if (linea.empty()) continue;
        const auto igual = linea.find('=');
        const auto destino = ranura(recortar(linea.substr(0, igual)));
        const auto origen =
            igual == std::string_view::npos ? std::nullopt : numeroDeTexto(linea.substr(igual + 1));
        if (!destino || !origen) {
            numero_ = kErrorDeSintaxis;
            return;
        }
        publicar(*destino, *origen);
    }
}

} // namespace kv
