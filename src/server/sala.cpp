// SPDX-License-Identifier: Apache-2.0
#include "server/sala.h"

#include <algorithm>

namespace kv {

std::string_view Visita::ip() const {
    return std::string_view(remoto).substr(0, remoto.rfind(':'));
}

Visita& Sala::recibir(Zocalo& escucha, OyenteDeZocalo& oyente, std::string_view remoto,
                      std::int64_t ahoraMs, std::string& salio) {
    const std::string_view ip = remoto.substr(0, remoto.rfind(':'));
    if (visitas_.size() >= kLugares || cuantas(ip) >= kPorDireccion) {
        const Visita& sale = laQueSale(ip);
        salio = sale.remoto;
        despedir(sale.numero);
    }
    Visita nueva{++ultimo_, std::string(remoto), ahoraMs};
    nueva.zocalo = escucha.aceptarAparte(oyente, static_cast<std::size_t>(nueva.numero));
    return visitas_.emplace_back(std::move(nueva));
}

std::size_t Sala::cuantas(std::string_view ip) const {
    return static_cast<std::size_t>(std::count_if(visitas_.begin(), visitas_.end(),
                                                  [ip](const Visita& v) { return v.ip() == ip; }));
}

const Visita& Sala::laQueSale(std::string_view ip) const {
    const bool desuIp = cuantas(ip) >= kPorDireccion;
    return *std::max_element(visitas_.begin(), visitas_.end(),
                             [&](const Visita& a, const Visita& b) {
                                 if (desuIp) return (a.ip() == ip) < (b.ip() == ip);
                                 return cuantas(a.ip()) < cuantas(b.ip());
                             });
}

Visita* Sala::hallar(std::uint64_t numero) {
    const auto v = std::find_if(visitas_.begin(), visitas_.end(),
                                [numero](const Visita& x) { return x.numero == numero; });
    return v == visitas_.end() ? nullptr : &*v;
}

void Sala::elegir(std::uint64_t numero) {
    visitas_.remove_if([numero](const Visita& v) { return v.numero != numero; });
    hayCliente_ = !visitas_.empty();
}

void Sala::despedir(std::uint64_t numero) {
    visitas_.remove_if([numero](const Visita& v) { return v.numero == numero; });
    hayCliente_ = hayCliente_ && !visitas_.empty();
}

} // namespace kv
