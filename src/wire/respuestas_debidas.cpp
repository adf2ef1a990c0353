// SPDX-License-Identifier: Apache-2.0
#include "wire/respuestas_debidas.h"

#include <algorithm>

namespace kv {

void RespuestasDebidas::saldar() {
    debidas_.clear();
    desbordada_ = duda_ = sospecha_ = false;
    retenidaDesde_ = -1;
}

void RespuestasDebidas::creer(const Respuesta& respuesta) {
    ultima_ = respuesta;
    hayUltima_ = true;
    negada_ = false;
}

bool RespuestasDebidas::soloDebe(Registro registro) const {
    return !desbordada_ && std::all_of(debidas_.begin(), debidas_.end(),
                                       [&](const Debida& d) { return d.registro == registro; });
}

bool RespuestasDebidas::rotulosDistinguen(Registro registro) const {
    return !desbordada_ && std::all_of(debidas_.begin(), debidas_.end(), [&](const Debida& d) {
        return d.registro == registro || rotulos_.distingue(registro, d.registro);
    });
}

RespuestasDebidas::Permiso RespuestasDebidas::permiso(Registro registro, std::int64_t ahora,
                                                      bool llego) const {
    if (limpia()) return {};
    if (!sospecha_ && (soloDebe(registro) || rotulosDistinguen(registro))) return {};
    // On trial: nothing has shown since the last request that the network carries.
    if (!prueba_) return {false, 0};
    const std::int64_t falta = faltaParaSilencio(ahora);
    if (falta > 0) return {false, falta};
    // What has not even reached the other end cannot have been answered.
    if (!llego) return {false, std::max<std::int64_t>(1, tiempoFueraMs_ / 4)};
    return {};
}

void RespuestasDebidas::alEnviar(Registro registro, std::int64_t ahora, std::int64_t tiempoFueraMs,
                                 bool llego) {
    if (prueba_ && llego && faltaParaSilencio(ahora) <= 0) saldar();
    // The last request got no answer but one that was dropped as no request's. It may well have
    // been its own: the stations no longer say what they used to.
    if (negada_) rotulos_.olvidar();
    negada_ = hayUltima_ = prueba_ = false;
    if (limpia()) tiempoFueraMs_ = tiempoFueraMs;
    duda_ = duda_ || !debidas_.empty();
    if (debidas_.size() == kDebidasMaximo) {
        // Of many requests for one register the oldest says nothing that the others do not.
        auto igual = std::find_if(debidas_.begin(), debidas_.end(),
                                  [&](const Debida& d) { return d.registro == registro; });
        if (igual == debidas_.end()) {
            desbordada_ = true;
            igual = debidas_.begin();
        }
        debidas_.erase(igual);
    }
    debidas_.push_back({registro, ahora, -1});
    enCurso_ = registro;
    movimiento_ = ahora;
    retenidaDesde_ = -1;
    tiempoFueraMs_ = std::max(tiempoFueraMs_, tiempoFueraMs);
}

/// By its own words.
RespuestasDebidas::De RespuestasDebidas::deQuien(Rotulos::Rotulo rotulo) const {
    using Juicio = Rotulos::Juicio;
    const Juicio propio = rotulos_.juzgar(enCurso_, rotulo);
    if (propio == Juicio::Suyo && rotulosDistinguen(enCurso_)) return De::LoPedido;
    if (propio != Juicio::Ajeno || desbordada_) return De::NoSeSabe;
    return std::any_of(debidas_.begin(), debidas_.end(),
                       [&](const Debida& d) {
                           return rotulos_.juzgar(d.registro, rotulo) != Juicio::Ajeno;
                       })
               ? De::Debida
               : De::Nadie;
}

/// An answer that says whose it is came late. The oldest request that it may answer has reached its
/// station, and so have those before it. Which one it answers is not known: answers are given
/// twice.
void RespuestasDebidas::pasar(Rotulos::Rotulo rotulo, std::int64_t ahora) {
    const auto suya = std::find_if(debidas_.begin(), debidas_.end(), [&](const Debida& d) {
        return rotulos_.juzgar(d.registro, rotulo) == Rotulos::Juicio::Suyo;
    });
    if (suya != debidas_.end()) pasarHasta(suya + 1, ahora);
}

void RespuestasDebidas::pasarHasta(std::vector<Debida>::iterator hasta, std::int64_t ahora) {
    for (auto d = debidas_.begin(); d != hasta; ++d) {
        if (d->pasada < 0) d->pasada = ahora;
    }
}

/// The same answer twice in one arrival, or once more right behind the last that was believed.
bool RespuestasDebidas::repetida(std::span<const Respuesta> respuestas, std::size_t k) const {
    return (k > 0 && respuestas[k] == respuestas[k - 1]) ||
           (hayUltima_ && respuestas[k] == ultima_);
}

RespuestasDebidas::Veredicto RespuestasDebidas::alRecibir(std::span<const Respuesta> respuestas,
                                                          std::int64_t ahora) {
    movimiento_ = ahora;
    prueba_ = true;
    const bool unaPedida = debidas_.size() == 1 && !desbordada_;
    std::size_t sinNombre = 0, primera = 0, nombrada = respuestas.size();
    for (std::size_t k = 0; k < respuestas.size(); ++k) {
        if (k > 0 && respuestas[k] == respuestas[k - 1]) continue; // given twice
        switch (deQuien(respuestas[k].rotulo)) {
        case De::LoPedido:
            nombrada = k;
            break;
        case De::Debida:
            pasar(respuestas[k].rotulo, ahora);
            break;
        case De::Nadie:
            negada_ = true;
            break;
        case De::NoSeSabe:
            if (sinNombre++ == 0) primera = k;
            break;
        }
    }
    if (nombrada < respuestas.size() && sinNombre == 0) {
        creer(respuestas[nombrada]);
        // While nothing else is owed it is certain without its bytes, which go on being learned.
        if (unaPedida && !duda_ && recelo_ == 0) rotulos_.aprender(enCurso_, ultima_.rotulo);
        aceptarPorRotulo(ahora);
        return {Veredicto::De::LoPedido, nombrada};
    }
    if (sinNombre == 0) return {};
    return contar(respuestas, primera, sinNombre);
}

/// Judges an arrival by its `cuantas` answers of which it is not known whose they are; the first of
/// them is number `primera`.
RespuestasDebidas::Veredicto RespuestasDebidas::contar(std::span<const Respuesta> respuestas,
                                                       std::size_t primera, std::size_t cuantas) {
    if (!soloDebe(enCurso_) || sospecha_ || cuantas > debidas_.size()) {
        duda_ = true;
        if (cuantas > debidas_.size()) {
            sospecha_ = true;
            recelo_ = kRecelo;
        }
        return {Veredicto::De::NoSeSabe, primera};
    }
    creer(respuestas[primera]);
    if (debidas_.size() == 1 && !duda_) {
        if (recelo_ == 0) {
            rotulos_.aprender(enCurso_, ultima_.rotulo);
            debidas_.clear();
        } else {
            --recelo_;
            duda_ = true;
        }
    }
    return {Veredicto::De::LoPedido, primera};
}

/// Requests that were sent before the answered one have been passed by. Who says nothing for three
/// time-outs after that, while others that were asked later are heard, is silent.
void RespuestasDebidas::aceptarPorRotulo(std::int64_t ahora) {
    const auto esPropia = [&](const Debida& d) { return d.registro == enCurso_; };
    const auto propia = std::find_if(debidas_.begin(), debidas_.end(), esPropia);
    // A write whose answer had another value waits on, and owes nothing any more.
    if (propia == debidas_.end()) return;
    if (std::any_of(propia + 1, debidas_.end(), esPropia)) // which of them is not known
        return pasarHasta(propia + 1, ahora);
    pasarHasta(propia, ahora);
    const std::int64_t enviada = propia->enviada;
    debidas_.erase(propia);
    std::erase_if(debidas_, [&](const Debida& d) {
        return d.pasada >= 0 && enviada >= d.pasada + silencioMs();
    });
    if (debidas_.empty()) duda_ = false;
}

void RespuestasDebidas::alSobrar(std::span<const Respuesta> respuestas, std::int64_t ahora) {
    if (respuestas.empty()) return;
    movimiento_ = ahora;
    prueba_ = true;
    for (std::size_t k = 0; k < respuestas.size(); ++k) {
        const Respuesta& r = respuestas[k];
        if (repetida(respuestas, k)) {
            if (recelo_ > 0) {
                recelo_ = kRecelo;
                if (debidas_.size() == 1 && !sospecha_) saldar();
            }
            continue;
        }
        pasar(r.rotulo, ahora);
        if (!limpia()) {
            duda_ = true;
        } else if (!rotulos_.dicen()) { // else no request will take it for its answer
            sospecha_ = true;
            recelo_ = kRecelo;
        }
    }
}

} // namespace kv
