#include "platform/temporizador.h"

#include <algorithm>
#include <limits>

namespace kv {
namespace {

constexpr std::size_t kHijos = 4; // a flatter heap touches fewer cache lines

} // namespace

Temporizador::Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic)
    : cola_(cola), alTic_(std::move(alTic)) {}

Temporizador::~Temporizador() { cola_.quitar(*this); }

void Temporizador::fijarIntervalo(std::int64_t ms) {
    intervaloMs_ = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(ms, 0, std::numeric_limits<std::int32_t>::max()));
    if (!habilitado_) return;
    cola_.quitar(*this);
    cola_.armar(*this);
}

void Temporizador::habilitar(bool encendido) {
    if (encendido == habilitado_) return;
    habilitado_ = encendido;
    if (encendido) {
        cola_.armar(*this);
    } else {
        cola_.quitar(*this);
    }
}

void Temporizador::rearmar(std::int64_t ms) {
    habilitado_ = true;
    fijarIntervalo(ms);
}

bool ColaDeTemporizadores::antes(const Temporizador* a, const Temporizador* b) {
    return a->venceUs_ != b->venceUs_ ? a->venceUs_ < b->venceUs_ : a->orden_ < b->orden_;
}

void ColaDeTemporizadores::armar(Temporizador& t) {
    if (t.intervaloMs_ == 0) return;
    const std::int64_t exacto = reloj_() + std::int64_t{t.intervaloMs_} * 1000;
    t.venceUs_ = (exacto + 999) / 1000 * 1000;
    t.orden_ = orden_++;
    monticulo_.push_back(&t);
    t.lugar_ = monticulo_.size() - 1;
    subir(t.lugar_);
}

void ColaDeTemporizadores::quitar(Temporizador& t) {
    if (t.lugar_ == Temporizador::kFuera) return;
    const std::size_t lugar = t.lugar_;
    t.lugar_ = Temporizador::kFuera;
    Temporizador* ultimo = monticulo_.back();
    monticulo_.pop_back();
    if (ultimo == &t) return;
    colocar(lugar, ultimo);
    subir(lugar);
    bajar(ultimo->lugar_);
}

bool ColaDeTemporizadores::ticar(std::int64_t ahoraUs, std::uint64_t hastaOrden) {
    if (monticulo_.empty()) return false;
    Temporizador& t = *monticulo_.front();
    if (t.venceUs_ > ahoraUs || t.orden_ >= hastaOrden) return false;
    quitar(t);
    armar(t);                  // counted from now: a late timer does not catch up
    const auto tic = t.alTic_; // the handler may destroy its own timer
    tic();
    return true;
}

void ColaDeTemporizadores::colocar(std::size_t lugar, Temporizador* t) {
    monticulo_[lugar] = t;
    t->lugar_ = lugar;
}

void ColaDeTemporizadores::subir(std::size_t lugar) {
    Temporizador* t = monticulo_[lugar];
    while (lugar > 0) {
        const std::size_t padre = (lugar - 1) / kHijos;
        if (!antes(t, monticulo_[padre])) break;
        colocar(lugar, monticulo_[padre]);
        lugar = padre;
    }
    colocar(lugar, t);
}

void ColaDeTemporizadores::bajar(std::size_t lugar) {
    Temporizador* t = monticulo_[lugar];
    for (;;) {
        const std::size_t primero = lugar * kHijos + 1;
        if (primero >= monticulo_.size()) break;
        std::size_t menor = primero;
        for (std::size_t h = primero + 1; h < std::min(primero + kHijos, monticulo_.size()); ++h) {
            if (antes(monticulo_[h], monticulo_[menor])) menor = h;
        }
        if (!antes(monticulo_[menor], t)) break;
        colocar(lugar, monticulo_[menor]);
        lugar = menor;
    }
    colocar(lugar, t);
}

} // namespace kv
