// SPDX-License-Identifier: Apache-2.0
#include "window/overview/recuento.h"

#include <algorithm>
#include <utility>

namespace kv {

bool Recuento::avanzar() {
    for (std::size_t miradas = 0; conexion_ < tablas_.conexiones.limiteSuperior();) {
        const auto& estaciones = tablas_.conexiones[conexion_].estaciones;
        if (estacion_ >= estaciones.limiteSuperior()) {
            ++conexion_;
            estacion_ = 0;
            continue;
        }
        if (miradas >= kPorVez) return false;
        if (estaciones[estacion_].retirada) {
            ++estacion_;
            continue;
        }
        miradas += estaciones[estacion_].bloques.size() + 1;
        contando_.push_back({conexion_, estacion_, porQue_.resumen(conexion_, estacion_)});
        ++estacion_;
    }
    estaciones_ = std::exchange(contando_, {});
    contando_.reserve(estaciones_.size());
    conexion_ = estacion_ = 0;
    total_ = {};
    primeraCallada_.assign(tablas_.conexiones.limiteSuperior(), estaciones_.size());
    for (std::size_t i = 0; i < estaciones_.size(); ++i) {
        const ResumenDeEstacion& r = estaciones_[i].resumen;
        total_.ok += r.ok;
        total_.bad += r.bad;
        total_.viejas += r.viejas;
        if (!r.callada) continue;
        ++total_.calladas;
        std::size_t& primera = primeraCallada_[estaciones_[i].conexion];
        primera = std::min(primera, i);
    }
    return true;
}

void Recuento::completar() {
    while (!avanzar()) {
    }
}

std::string Recuento::sinRespuesta(Indice conexion) const {
    if (conexion >= primeraCallada_.size() || primeraCallada_[conexion] >= estaciones_.size())
        return {};
    return porQue_.sinRespuesta(estaciones_[primeraCallada_[conexion]].resumen);
}

} // namespace kv
