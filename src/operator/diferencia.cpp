// SPDX-License-Identifier: Apache-2.0
#include "operator/diferencia.h"

#include "plant/claves_de_bloque.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kv {
namespace {

using Lugar = Tablas::LugarDeEstacion;

// What it takes to look at a record of the plant, and at one of the lists.
constexpr std::int64_t kPorRegistro = 5;
constexpr std::int64_t kPorConfigurado = 8;

/// The blocks of a plant by their keys. Equal keys stand in creation order, and each is taken once.
class BloquesPorClave {
  public:
    explicit BloquesPorClave(const Tablas& tablas)
        : tablas_(tablas), siguiente_(tablas.bloques.limiteSuperior(), kNinguno), toca_(siguiente_),
          lugares_(std::bit_ceil(2 * siguiente_.size() + 1), kNinguno) {}

    /// Those that there were when this was made.
    [[nodiscard]] Indice cuantos() const { return static_cast<Indice>(siguiente_.size()); }
    /// From the last one to the first.
    void poner(Indice bloque) {
        siguiente_[bloque] = std::exchange(lugarDe(tablas_.bloques[bloque].clave), bloque);
        toca_[bloque] = bloque;
    }
    /// The first that has not been taken, if it is of that station; else kNinguno.
    [[nodiscard]] Indice tomar(std::string_view clave, const Lugar& de) {
        const Indice primero = lugarDe(clave);
        const Indice este = primero == kNinguno ? kNinguno : toca_[primero];
        if (este == kNinguno) return kNinguno;
        const BloqueLectura& b = tablas_.bloques[este];
        if (b.idConexion != de.conexion || b.idEstacion != de.estacion) return kNinguno;
        toca_[primero] = siguiente_[este];
        return este;
    }

  private:
    [[nodiscard]] Indice& lugarDe(std::string_view clave) {
        const std::size_t mascara = lugares_.size() - 1;
        std::size_t n = std::hash<std::string_view>{}(clave)&mascara;
        while (lugares_[n] != kNinguno && tablas_.bloques[lugares_[n]].clave != clave)
            n = (n + 1) & mascara;
        return lugares_[n];
    }

    const Tablas& tablas_;
    std::vector<Indice> siguiente_; ///< of the same key, by block
    std::vector<Indice> toca_;      ///< which is taken next, by the first of a key
    std::vector<Indice> lugares_;   ///< open addressing: the first of a key
};

class Comparacion {
  public:
    Comparacion(const Tablas& tablas, const ListasDeConfiguracion& listas,
                const Validacion& validacion, Diferencia& d, Porciones& porciones)
        : tablas_(tablas), listas_(listas), validacion_(validacion), porciones_(porciones),
          lugares_(listas.estaciones.size()), porClave_(tablas), quedan_(porClave_.cuantos()),
          d_(d) {}

    Trabajo hacer() {
        d_.hasta = porClave_.cuantos();
        for (const ConexionPrevista& c : validacion_.conexiones) {
            emparejarEstaciones(c);
            co_await porciones_.gastar(5 * static_cast<std::int64_t>(c.estaciones.size()));
        }
        co_await estacionesQueSobran();
        for (Indice i = porClave_.cuantos(); i-- > 0;) {
            const BloqueLectura& b = tablas_.bloques[i];
            if (!b.retirado && queda({b.idConexion, b.idEstacion})) porClave_.poner(i);
            co_await porciones_.gastar(kPorRegistro);
        }
        for (std::size_t i = 0; i < listas_.bloques.size(); ++i) {
            co_await porciones_.gastar(kPorConfigurado);
            if (i < validacion_.bloques.size() && validacion_.bloques[i] != Suerte::NoConstruir)
                emparejarBloque(i);
        }
        co_await bloquesQueSobran();
    }

  private:
    void emparejarEstaciones(const ConexionPrevista& prevista) {
        const Indice k = tablas_.buscarConexion(prevista.ip, prevista.puertoTCP);
        std::unordered_map<std::int16_t, Indice> porIndice;
        if (k != kNinguno && tablas_.conexiones[k].puerto == prevista.puerto) {
            for (const Indice e : tablas_.conexiones[k].estacionesEnUso())
                porIndice.try_emplace(tablas_.conexiones[k].estaciones[e].indice, e);
        }
        for (const std::size_t i : prevista.estaciones) {
            const auto hallada = porIndice.find(listas_.estaciones[i].indice);
            if (hallada != porIndice.end() &&
                tablas_.conexiones[k].estaciones[hallada->second].numero ==
                    listas_.estaciones[i].numero) {
                lugares_[i] = {k, hallada->second};
                estaciones_.push_back(clave(lugares_[i]));
            } else {
                d_.estacionesNuevas.push_back(i);
            }
        }
    }

    Trabajo estacionesQueSobran() {
        std::sort(estaciones_.begin(), estaciones_.end());
        for (Indice k = 0; k < tablas_.conexiones.limiteSuperior(); ++k) {
            const auto& estaciones = tablas_.conexiones[k].estaciones;
            for (Indice e = 0; e < estaciones.limiteSuperior(); ++e) {
                if (!estaciones[e].retirada && !queda({k, e}))
                    d_.estacionesQueSobran.push_back({k, e});
                co_await porciones_.gastar(kPorRegistro);
            }
        }
    }

    Trabajo bloquesQueSobran() {
        for (Indice k = 0; k < tablas_.conexiones.limiteSuperior(); ++k) {
            const auto& suyos = tablas_.conexiones[k].bloques;
            // More may be asked for meanwhile, and stay.
            for (std::size_t n = 0; n < suyos.size() && suyos[n] < quedan_.size(); ++n) {
                const BloqueLectura& b = tablas_.bloques[suyos[n]];
                if (!b.retirado && !quedan_[b.indice] &&
                    !(b.aPedido && queda({b.idConexion, b.idEstacion})))
                    d_.bloquesQueSobran.push_back(b.indice);
                co_await porciones_.gastar(kPorRegistro);
            }
        }
    }

    void emparejarBloque(std::size_t i) {
        const ConfiguracionDeBloque& pedido = listas_.bloques[i];
        const Lugar lugar = lugares_[validacion_.estacionDeBloque[i]];
        const auto registros = registrosDeBloque(pedido.direccion, pedido.cantidad);
        std::vector<std::string> faltan;
        for (const std::string& registro : registros) {
            const Indice b =
                lugar.conexion == kNinguno
                    ? kNinguno
                    : porClave_.tomar(claveDeBloque(pedido.puerto, pedido.plc, registro), lugar);
            if (b == kNinguno) {
                faltan.push_back(registro);
                continue;
            }
            quedan_[b] = true;
            if (esIgual(tablas_.bloques[b], pedido)) {
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

    [[nodiscard]] static bool esIgual(const BloqueLectura& b, const ConfiguracionDeBloque& pedido) {
        return !b.aPedido && b.nivel == pedido.nivel && b.scanConfigurado == pedido.scanSegundos &&
               b.activoPorDefecto == pedido.activoPorDefecto;
    }

    [[nodiscard]] static std::uint64_t clave(const Lugar& l) {
        return std::uint64_t{l.conexion} << 32 | l.estacion;
    }
    [[nodiscard]] bool queda(const Lugar& l) const {
        return std::binary_search(estaciones_.begin(), estaciones_.end(), clave(l));
    }

    const Tablas& tablas_;
    const ListasDeConfiguracion& listas_;
    const Validacion& validacion_;
    Porciones& porciones_;
    std::vector<Lugar> lugares_;            ///< where the stations of the lists are, if they are
    std::vector<std::uint64_t> estaciones_; ///< that stay
    BloquesPorClave porClave_;              ///< of those stations
    std::vector<bool> quedan_;              ///< by block
    Diferencia& d_;
};

} // namespace

Trabajo comparar(const Tablas& tablas, const ListasDeConfiguracion& listas,
                 const Validacion& validacion, Diferencia& diferencia, Porciones& porciones) {
    Comparacion comparacion(tablas, listas, validacion, diferencia, porciones);
    co_await comparacion.hacer();
}

} // namespace kv
