// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_valores.h"

#include "plant/claves_de_bloque.h"
#include "plant/valor_y_estado.h"
#include "text/numeros.h"

namespace kv::mundo {
namespace {

constexpr std::size_t kGuionPorBarrida = 4;

} // namespace

void ReglaDeValores::conocerBloques() {
    const Tablas& t = c_.motor.tablas;
    for (std::size_t i = dichos_.size(); i < t.bloques.limiteSuperior(); ++i) {
        dichos_.emplace_back();
        const auto [otro, nueva] =
            porClave_.try_emplace(t.bloques[i].clave, static_cast<Indice>(i));
        const bool vuelve = !nueva && t.bloques[otro->second].retirado;
        unico_.push_back(nueva || vuelve ? 1 : 0);
        if (!nueva) unico_[otro->second] = 0;
        if (vuelve) otro->second = static_cast<Indice>(i);
    }
}

Indice ReglaDeValores::bloqueDe(std::string_view clave) const {
    const auto i = porClave_.find(clave);
    return i == porClave_.end() ? kNinguno : i->second;
}

void ReglaDeValores::notificarVariable(std::string_view direccion, double valor, double estado) {
    conocerBloques();
    ultimoAvisoUs_ = c_.ahoraUs();
    const Indice i = bloqueDe(direccion);
    if (c_.exigir(i != kNinguno, "what is told of is a block", 0)) {
        const BloqueLectura& b = c_.motor.tablas.bloques[i];
        dichos_[i] = {valor, estado};
        if (estado == kOk) {
            Linea& linea = *c_.lineas[b.idConexion];
            c_.exigir(linea.pudoLlegar(b.tramaSolicitud[1], b.tramaSolicitud[3],
                                       static_cast<std::int16_t>(valor)) ||
                          linea.disculpada(),
                      "a value told of was answered by its register", i);
            c_.exigir(!unico(i) || b.habilitadoPorRespuestas, "who was answered does not rest", i);
        } else {
            c_.exigir(estado == kBad, "a status is OK or BAD", i);
        }
        if (b.ranuraValor != kNinguno && unico(i) && i % 4 == 0) guionIgual(i);
    }
    siguiente_.notificarVariable(direccion, valor, estado);
}

/// Whoever was not answered is BAD when it is put to rest; whoever is due no more was answered.
void ReglaDeValores::alTerminarLectura(Indice bloque) {
    const BloqueLectura& b = c_.motor.tablas.bloques[bloque];
    if (b.retirado) return;
    if (!b.habilitadoPorRespuestas)
        c_.exigir(b.estado == kBad, "who rests is BAD", bloque);
    else if (!b.pendiente && c_.supervisada(b.idConexion))
        c_.exigir(b.estado == kOk, "who was answered is OK", bloque);
}

void ReglaDeValores::guionIgual(std::size_t bloque) {
    const BloqueLectura& b = c_.motor.tablas.bloques[bloque];
    ScriptControl& guion = c_.motor.scriptControl;
    c_.exigir(guion.valorDe(nombreDeScript(b.clave)) == dichos_[bloque].valor &&
                  guion.valorDe(nombreDeScript(b.clave) + "_STATUS") == dichos_[bloque].estado,
              "the script's variables say what the table says", bloque);
}

void ReglaDeValores::filaIgual(const BloqueLectura& b) {
    const Lista& filas = c_.motor.vista.lstViewVariables;
    c_.exigir(filas.texto(b.filaVariable, 1) == textoDeNumero(b.valor) &&
                  filas.texto(b.filaVariable, 2).starts_with(textoEstado(b.estado)),
              "the row says what the table says", b.indice);
}

void ReglaDeValores::barrer() {
    conocerBloques();
    const Tablas& t = c_.motor.tablas;
    for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = t.bloques[i];
        const bool viva = c_.conexion(b.idConexion).estadoSupervision == 1;
        if (unico(i) && !b.retirado)
            c_.exigir(b.valor == dichos_[i].valor && b.estado == dichos_[i].estado,
                      "the table holds what was told last", i);
        c_.exigir(viva || b.estado == kBad, "without a link everything is BAD", i);
    }
    for (std::size_t k = 0; k < std::min(kGuionPorBarrida, t.bloques.limiteSuperior()); ++k) {
        proximoGuion_ = (proximoGuion_ + 1) % t.bloques.limiteSuperior();
        const BloqueLectura& b = t.bloques[proximoGuion_];
        if (b.ranuraValor != kNinguno && unico(proximoGuion_) && !b.retirado)
            guionIgual(proximoGuion_);
        filaIgual(b);
    }
}

} // namespace kv::mundo
