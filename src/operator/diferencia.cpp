// SPDX-License-Identifier: Apache-2.0
#include "operator/diferencia.h"

#include "plant/bases.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace kv {
namespace {

using Lugar = Tablas::LugarDeEstacion;

class Comparacion {
  public:
    Comparacion(const Tablas& tablas, const ListasDeConfiguracion& listas,
                const Validacion& validacion)
        : tablas_(tablas), listas_(listas), validacion_(validacion),
          lugares_(listas.estaciones.size()) {}

    Diferencia hacer() {
        for (const ConexionPrevista& c : validacion_.conexiones)
            emparejarEstaciones(c);
        estacionesQueSobran();
        ordenarLosQueHay();
        for (std::size_t i = 0; i < listas_.bloques.size(); ++i) {
            if (i < validacion_.bloques.size() && validacion_.bloques[i] != Suerte::NoConstruir)
                emparejarBloque(i);
        }
        for (std::size_t n = 0; n < hay_.size(); ++n) {
            if (!tomados_[n]) d_.bloquesQueSobran.push_back(hay_[n].second);
        }
        return std::move(d_);
    }

  private:
    void emparejarEstaciones(const ConexionPrevista& prevista) {
        const Indice k = tablas_.buscarConexion(prevista.ip, prevista.puertoTCP);
        std::unordered_map<std::int16_t, Indice> porIndice;
        if (k != kNinguno && tablas_.conexiones[k].puerto == prevista.puerto) {
            const auto& estaciones = tablas_.conexiones[k].estaciones;
            for (Indice e = 0; e < estaciones.limiteSuperior(); ++e) {
                if (!estaciones[e].retirada) porIndice.try_emplace(estaciones[e].indice, e);
            }
        }
        for (const std::size_t i : prevista.estaciones) {
            const auto hallada = porIndice.find(listas_.estaciones[i].indice);
            if (hallada != porIndice.end() &&
                tablas_.conexiones[k].estaciones[hallada->second].numero ==
                    listas_.estaciones[i].numero) {
                lugares_[i] = {k, hallada->second};
                quedan_.push_back(clave(lugares_[i]));
            } else {
                d_.estacionesNuevas.push_back(i);
            }
        }
    }

    void estacionesQueSobran() {
        std::sort(quedan_.begin(), quedan_.end());
        for (Indice k = 0; k < tablas_.conexiones.limiteSuperior(); ++k) {
            const auto& estaciones = tablas_.conexiones[k].estaciones;
            for (Indice e = 0; e < estaciones.limiteSuperior(); ++e) {
                if (!estaciones[e].retirada && !queda({k, e}))
                    d_.estacionesQueSobran.push_back({k, e});
            }
        }
    }

    /// Blocks of stations that stay, by key and then in creation order.
    void ordenarLosQueHay() {
        for (Indice i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
            const BloqueLectura& b = tablas_.bloques[i];
            if (b.retirado) continue;
            if (queda({b.idConexion, b.idEstacion})) {
                hay_.emplace_back(b.clave, i);
            } else {
                d_.bloquesQueSobran.push_back(i);
            }
        }
        std::sort(hay_.begin(), hay_.end());
        tomados_.resize(hay_.size());
        for (std::size_t n = 0; n < hay_.size(); ++n) {
            siguiente_.try_emplace(hay_[n].first, n);
            tomados_[n] = tablas_.bloques[hay_[n].second].aPedido;
        }
    }

    void emparejarBloque(std::size_t i) {
        const ConfiguracionDeBloque& pedido = listas_.bloques[i];
        const Lugar lugar = lugares_[validacion_.estacionDeBloque[i]];
        const auto registros = registrosDeBloque(pedido.direccion, pedido.cantidad);
        std::vector<std::string> faltan;
        for (const std::string& registro : registros) {
            const Indice b = lugar.conexion == kNinguno
                                 ? kNinguno
                                 : tomar(claveDeBloque(pedido.puerto, pedido.plc, registro), lugar);
            if (b == kNinguno) {
                faltan.push_back(registro);
            } else if (esIgual(tablas_.bloques[b], pedido)) {
                ++d_.iguales;
            } else {
                d_.cambios.push_back({b, i});
            }
        }
        // One that is all new is raised in one piece, as at the start.
        if (faltan.size() == registros.size())
            return d_.nuevos.push_back({i, pedido.direccion, pedido.cantidad});
        for (std::string& registro : faltan)
            d_.nuevos.push_back({i, std::move(registro), 1});
    }

    [[nodiscard]] Indice tomar(const std::string& clave, const Lugar& lugar) {
        const auto i = siguiente_.find(clave);
        if (i == siguiente_.end()) return kNinguno;
        std::size_t& n = i->second;
        if (n == hay_.size() || hay_[n].first != clave) return kNinguno;
        const BloqueLectura& b = tablas_.bloques[hay_[n].second];
        if (b.idConexion != lugar.conexion || b.idEstacion != lugar.estacion) return kNinguno;
        tomados_[n] = true;
        return hay_[n++].second;
    }

    [[nodiscard]] static bool esIgual(const BloqueLectura& b, const ConfiguracionDeBloque& pedido) {
        return !b.aPedido && b.nivel == pedido.nivel && b.scanConfigurado == pedido.scanSegundos &&
               b.activoPorDefecto == pedido.activoPorDefecto;
    }

    [[nodiscard]] static std::uint64_t clave(const Lugar& l) {
        return std::uint64_t{l.conexion} << 32 | l.estacion;
    }
    [[nodiscard]] bool queda(const Lugar& l) const {
        return std::binary_search(quedan_.begin(), quedan_.end(), clave(l));
    }

    const Tablas& tablas_;
    const ListasDeConfiguracion& listas_;
    const Validacion& validacion_;
    std::vector<Lugar> lugares_; ///< where the stations of the lists are, if they are
    std::vector<std::uint64_t> quedan_;
    std::vector<std::pair<std::string_view, Indice>> hay_;
    std::vector<bool> tomados_;
    std::unordered_map<std::string_view, std::size_t> siguiente_; ///< first not taken of a key
    Diferencia d_;
};

} // namespace

Diferencia comparar(const Tablas& tablas, const ListasDeConfiguracion& listas,
                    const Validacion& validacion) {
    return Comparacion(tablas, listas, validacion).hacer();
}

} // namespace kv
