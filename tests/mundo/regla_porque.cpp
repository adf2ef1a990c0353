// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_porque.h"

#include "plant/bases.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::size_t kPorBarrida = 8;

} // namespace

void ReglaDePorQue::alSuceder(const kv::Suceso& s, std::string_view /*texto*/) {
    const std::int64_t ahora = c_.bucle.reloj().monotonicoMs();
    if (s.bloque != kNinguno && s.bloque >= bloques_.size()) bloques_.resize(s.bloque + 1);
    if (s.que == Que::Recepcion) bloques_[s.bloque] = {ahora, 0};
    if (s.que == Que::TiempoFuera) ++bloques_[s.bloque].vencidas;
    if (s.que != Que::EnlaceArriba && s.que != Que::EnlaceAbajo) return;
    if (s.conexion >= enlaces_.size()) enlaces_.resize(s.conexion + 1, -1);
    enlaces_[s.conexion] = ahora;
}

void ReglaDePorQue::mirar() {
    const auto cuantos = static_cast<Indice>(c_.motor.tablas.bloques.limiteSuperior());
    bloques_.resize(cuantos);
    enlaces_.resize(c_.conexiones(), -1);
    for (std::size_t k = 0; k < std::min<std::size_t>(kPorBarrida, cuantos); ++k) {
        siguiente_ = siguiente_ + 1 < cuantos ? siguiente_ + 1 : 0;
        if (!c_.motor.tablas.bloques[siguiente_].retirado) mirar(siguiente_);
    }
}

/// The number that stands before words; 0 where they are not.
std::uint32_t ReglaDePorQue::numeroAntesDe(const std::string& texto, std::string_view que) {
    const auto i = texto.find(que);
    if (i == std::string::npos || i == 0) return 0;
    const auto desde = texto.find_last_not_of("0123456789", i - 1);
    return static_cast<std::uint32_t>(std::stoul(texto.substr(desde + 1, i - desde - 1)));
}

void ReglaDePorQue::mirar(Indice i) {
    const BloqueLectura& b = c_.motor.tablas.bloques[i];
    const PorQue& q = c_.motor.porQue;
    const std::string dice = q.porQueVariable(i);
    const auto tiene = [&dice](std::string_view que) {
        return dice.find(que) != std::string::npos;
    };
    c_.exigir(dice.starts_with("OK") == (b.estado == kOk), "the reason knows what is OK", i);
    const DeBloque& suyo = bloques_[i];
    c_.exigir(tiene("nunca leida") == (suyo.leidaMs < 0), "the reason knows what was never read",
              i);
    if (suyo.leidaMs >= 0)
        c_.exigir(tiene("leida por ultima vez hace " + q.hace(suyo.leidaMs)),
                  "the reason knows the last answer", i);
    if (const std::string_view intentos = " sin nada"; tiene(intentos) || tiene(" con bytes "))
        c_.exigir(tiene("la estacion ") ||
                      numeroAntesDe(dice, intentos) + numeroAntesDe(dice, " con bytes ") ==
                          suyo.vencidas,
                  "the reason counts the tries", i);
    if (b.estado != kOk) mirarMalas(i, dice);
}

void ReglaDePorQue::mirarMalas(Indice i, const std::string& dice) {
    const BloqueLectura& b = c_.motor.tablas.bloques[i];
    const auto tiene = [&dice](const std::string& que) {
        return dice.find(que) != std::string::npos;
    };
    if (!b.tieneTrama) return;
    c_.exigir(tiene("el bloque esta apagado") == !b.activo, "the reason knows what is off", i);
    if (!b.activo) return;
    const Indice n = b.idConexion;
    const ConexionIP& c = c_.conexion(n);
    const bool arriba = c_.supervisada(n);
    c_.exigir(tiene("la conexion " + c.ip + ":" + c.puertoTCP) == !arriba,
              "the reason knows what has no link", i);
    if (!arriba && !c_.conectada(n) && enlaces_[n] >= 0)
        c_.exigir(tiene("esta caida desde " + c_.motor.porQue.hora(Momento(enlaces_[n]).ms())),
                  "the reason knows since when", i);
    if (!arriba) return;
    const Estacion& e = c_.motor.tablas.estacionDe(b);
    c_.exigir(tiene("pregunta por todos") || tiene("se esta preguntando por ella")
                  ? e.muda && !b.habilitadoPorRespuestas
                  : !e.muda || b.habilitadoPorRespuestas,
              "the reason knows who asks for a silent station", i);
}

} // namespace kv::mundo
