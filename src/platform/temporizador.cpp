// SPDX-License-Identifier: Apache-2.0
#include "platform/temporizador.h"

#include <algorithm>
#include <limits>

namespace kv {
namespace {

constexpr std::size_t kHijos = 4; // a flatter heap touches fewer cache lines

} // namespace

Temporizador::Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic)
    : cola_(cola), alTic_(std::move(alTic)) {
    cola_.anotar(*this);
}

Temporizador::~Temporizador() { cola_.borrar(*this); }

void Temporizador::fijarIntervalo(std::int64_t ms) {
    intervaloMs_ = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(ms, 0, std::numeric_limits<std::int32_t>::max()));
    if (habilitado_) cola_.armar(*this);
}

void Temporizador::habilitar(bool encendido) {
    if (encendido == habilitado_) return;
    habilitado_ = encendido;
    if (encendido) cola_.armar(*this);
}

void Temporizador::rearmar(std::int64_t ms) {
    habilitado_ = true;
    fijarIntervalo(ms);
}

void ColaDeTemporizadores::anotar(Temporizador& t) {
    if (libres_.empty()) {
        t.puesto_ = static_cast<std::uint32_t>(puestos_.size());
        puestos_.push_back(&t);
        libres_.reserve(puestos_.capacity()); // a destructor gives the place back
    } else {
        t.puesto_ = libres_.back();
        libres_.pop_back();
        puestos_[t.puesto_] = &t;
    }
}

void ColaDeTemporizadores::borrar(Temporizador& t) {
    puestos_[t.puesto_] = nullptr;
    libres_.push_back(t.puesto_);
}

void ColaDeTemporizadores::armar(Temporizador& t) {
    if (t.intervaloMs_ == 0) return;
    const std::int64_t exacto = reloj_() + std::int64_t{t.intervaloMs_} * 1000;
    const std::int64_t vence = (exacto + 999) / 1000 * 1000;
    // An entry that comes up no later serves: it will be found early and put in its place then.
    const bool sirve = t.entrada_ != 0 && t.venceEntradaUs_ <= vence;
    t.venceUs_ = vence;
    t.orden_ = ++orden_;
    if (!sirve) meter(t);
}

void ColaDeTemporizadores::meter(Temporizador& t) {
    const Entrada e{t.venceUs_, t.orden_, t.puesto_};
    if (monticulo_.size() > 4 * puestos_.size() + 64) compactar();
    monticulo_.push_back(e); // may fail: then the timer still has the entry that it had
    t.entrada_ = e.orden;
    t.venceEntradaUs_ = e.venceUs;
    std::size_t lugar = monticulo_.size() - 1;
    while (lugar > 0) {
        const std::size_t padre = (lugar - 1) / kHijos;
        if (!(e < monticulo_[padre])) break;
        monticulo_[lugar] = monticulo_[padre];
        lugar = padre;
    }
    monticulo_[lugar] = e;
}

Temporizador* ColaDeTemporizadores::duenio(const Entrada& e) const {
    Temporizador* t = puestos_[e.puesto];
    return t != nullptr && t->entrada_ == e.orden ? t : nullptr;
}

void ColaDeTemporizadores::sacarPrimera() {
    const Entrada ultima = monticulo_.back();
    monticulo_.pop_back();
    if (!monticulo_.empty()) bajarDesde(0, ultima);
}

void ColaDeTemporizadores::bajarDesde(std::size_t hueco, const Entrada& e) {
    for (;;) {
        const std::size_t primero = hueco * kHijos + 1;
        if (primero >= monticulo_.size()) break;
        std::size_t menor = primero;
        for (std::size_t h = primero + 1; h < std::min(primero + kHijos, monticulo_.size()); ++h) {
            if (monticulo_[h] < monticulo_[menor]) menor = h;
        }
        if (!(monticulo_[menor] < e)) break;
        monticulo_[hueco] = monticulo_[menor];
        hueco = menor;
    }
    monticulo_[hueco] = e;
}

/// Drops the entries that mean nothing any more.
void ColaDeTemporizadores::compactar() {
    std::erase_if(monticulo_, [this](const Entrada& e) { return duenio(e) == nullptr; });
    for (std::size_t i = monticulo_.size(); i-- > 0;)
        bajarDesde(i, Entrada(monticulo_[i]));
}

std::int64_t ColaDeTemporizadores::proximo() {
    while (!monticulo_.empty()) {
        const Entrada primera = monticulo_.front();
        Temporizador* t = duenio(primera);
        if (t != nullptr && t->habilitado_ && t->intervaloMs_ > 0) {
            if (t->orden_ == primera.orden) return primera.venceUs;
            sacarPrimera();
            meter(*t); // armed again meanwhile: to its proper place
            continue;
        }
        if (t != nullptr) t->entrada_ = 0;
        sacarPrimera();
    }
    return -1;
}

bool ColaDeTemporizadores::ticar(std::int64_t ahoraUs) {
    const std::int64_t vence = proximo();
    if (vence < 0 || vence > ahoraUs) return false;
    Temporizador& t = *puestos_[monticulo_.front().puesto];
    sacarPrimera();
    tic(t);
    return true;
}

bool ColaDeTemporizadores::ticarPuesto(std::uint32_t puesto) {
    Temporizador* t = puesto < puestos_.size() ? puestos_[puesto] : nullptr;
    if (t == nullptr || !t->habilitado_ || t->intervaloMs_ == 0) return false;
    tic(*t);
    return true;
}

void ColaDeTemporizadores::tic(Temporizador& t) {
    t.entrada_ = 0;
    if (t.unaVez_) {
        t.habilitado_ = false;
    } else {
        armar(t); // counted from now: a late timer does not catch up
    }
    if (alTicar_) alTicar_(t.puesto_);
    const auto alTic = t.alTic_; // the handler may destroy its own timer
    alTic();
}

std::size_t ColaDeTemporizadores::encendidos() const {
    return static_cast<std::size_t>(
        std::count_if(puestos_.begin(), puestos_.end(), [](const Temporizador* t) {
            return t != nullptr && t->habilitado_ && t->intervaloMs_ > 0;
        }));
}

} // namespace kv
