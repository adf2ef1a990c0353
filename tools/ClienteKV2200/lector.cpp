// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/lector.h"

#include <array>
#include <utility>

namespace kv::cliente {
namespace {

constexpr std::size_t kMaximoPendiente = 1U << 20; // an envelope has ten records

using Clase = Mensaje::Clase;
constexpr std::array<std::pair<std::string_view, Clase>, 5> kSueltos{{
    {kClaveAceptada, Clase::Aceptada},
    {kEscrituraRecibida, Clase::Escrita},
    {kKeepAliveDelDriver, Clase::KeepAlive},
    {kKeepAliveDelCliente, Clase::Eco},
    {kFinDeSincronismo, Clase::FinDeSincronismo},
}};

bool puedeSer(std::string_view resto, std::string_view palabra) {
    return resto.size() < palabra.size() && palabra.starts_with(resto);
}

} // namespace

Mensaje Lector::datos(std::string_view carga) const {
    Mensaje m;
    const std::string& sobre = separadores_.sobre;
    if (carga.starts_with(sobre)) carga.remove_prefix(sobre.size());
    if (carga.ends_with(sobre)) carga.remove_suffix(sobre.size());
    const auto campo = [this, &carga] {
        const auto i = carga.find(separadores_.campo);
        const std::string_view c = carga.substr(0, i);
        carga.remove_prefix(i == std::string_view::npos ? carga.size()
                                                        : i + separadores_.campo.size());
        return std::string(c);
    };
    while (!carga.empty()) {
        Variable v;
        v.direccion = campo();
        v.valor = campo();
        v.estado = campo();
        m.variables.push_back(std::move(v));
    }
    return m;
}

std::vector<Mensaje> Lector::agregar(std::string_view bytes) {
    pendiente_ += bytes;
    std::vector<Mensaje> mensajes;
    std::string_view resto = pendiente_;
    while (!resto.empty()) {
        if (resto.starts_with(kAbreSobre)) {
            const auto fin = resto.find(kCierraSobre);
            if (fin == std::string_view::npos) break;
            mensajes.push_back(datos(resto.substr(kAbreSobre.size(), fin - kAbreSobre.size())));
            resto.remove_prefix(fin + kCierraSobre.size());
            continue;
        }
        bool incompleto = puedeSer(resto, kAbreSobre);
        std::size_t largo = 1;
        for (const auto& [palabra, clase] : kSueltos) {
            incompleto = incompleto || puedeSer(resto, palabra);
            if (!resto.starts_with(palabra)) continue;
            mensajes.push_back({clase, {}});
            largo = palabra.size();
        }
        if (incompleto) break;
        resto.remove_prefix(largo);
    }
    pendiente_ = resto.size() > kMaximoPendiente ? std::string() : std::string(resto);
    return mensajes;
}

} // namespace kv::cliente
