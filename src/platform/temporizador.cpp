// SPDX-License-Identifier: Apache-2.0
#include "platform/temporizador.h"

#include <algorithm>
#include <limits>

namespace kv {
namespace {

constexpr std::int64_t kTramoMs = 4096; // what the far slots are long; two of them are near
constexpr std::size_t kTramos = 4096;   // 4.6 hours: a timer for later is looked at once or more

std::int64_t tramoDe(std::int64_t ms) { return ms / kTramoMs; }

} // namespace

ColaDeTemporizadores::ColaDeTemporizadores(LeerReloj reloj)
    : reloj_(std::move(reloj)), cercanos_(2 * kTramoMs), lejanos_(kTramos) {}

Temporizador::Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic)
    : cola_(cola), alTic_(std::move(alTic)) {
    cola_.anotar(*this);
}

Temporizador::~Temporizador() { cola_.borrar(*this); }

void Temporizador::anotarIntervalo(std::int64_t ms) {
    intervaloMs_ = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(ms, 0, std::numeric_limits<std::int32_t>::max()));
}

void Temporizador::fijarIntervalo(std::int64_t ms) {
    anotarIntervalo(ms);
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

void Temporizador::rearmar(std::int64_t ms, std::int64_t desdeUs) {
    habilitado_ = true;
    anotarIntervalo(ms);
    cola_.armar(*this, desdeUs);
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
    desarchivar(t);
    puestos_[t.puesto_] = nullptr;
    libres_.push_back(t.puesto_);
}

void ColaDeTemporizadores::armar(Temporizador& t, std::int64_t desdeUs) {
    if (t.intervaloMs_ == 0) return;
    const std::int64_t exacto = desdeUs + std::int64_t{t.intervaloMs_} * 1000;
    t.venceUs_ = (exacto + 999) / 1000 * 1000;
    t.orden_ = ++orden_;
    using Archivado = Temporizador::Archivado;
    const std::int64_t ms = t.venceUs_ / 1000;
    // Where it is looked at no later than that it stays: its proper place is found then.
    if (t.archivado_ == Archivado::Vencido ||
        (t.archivado_ == Archivado::Cerca && t.ranura <= ms) ||
        (t.archivado_ == Archivado::Lejos && t.ranura <= tramoDe(ms)))
        return;
    desarchivar(t);
    archivar(t);
}

void ColaDeTemporizadores::archivar(Temporizador& t) {
    const std::int64_t ms = std::max(t.venceUs_ / 1000, cursorMs_);
    const std::int64_t tramo = tramoDe(ms);
    const std::int64_t actual = tramoDe(cursorMs_);
    if (tramo <= actual + 1) {
        cercanos_.poner(t, ms);
        t.archivado_ = Temporizador::Archivado::Cerca;
    } else {
        lejanos_.poner(t, std::min(tramo, actual + lejanos_.ranuras() - 1));
        t.archivado_ = Temporizador::Archivado::Lejos;
    }
}

void ColaDeTemporizadores::desarchivar(Temporizador& t) {
    using Archivado = Temporizador::Archivado;
    if (t.archivado_ == Archivado::Cerca) cercanos_.sacar(t);
    if (t.archivado_ == Archivado::Lejos) lejanos_.sacar(t);
    t.archivado_ = Archivado::No;
}

/// All that a slot holds, out of it.
void ColaDeTemporizadores::soltar(Rueda& rueda, std::int64_t ranura) {
    while (EnRueda* e = rueda.primero(ranura)) {
        auto& t = static_cast<Temporizador&>(*e);
        desarchivar(t);
        sueltos_.push_back(&t);
    }
}

/// Looks at all that is filed up to `ms`. False if none of it is due.
bool ColaDeTemporizadores::pasarHasta(std::int64_t ms) {
    if (ms < cursorMs_) return false;
    const std::int64_t antes = tramoDe(cursorMs_);
    const std::int64_t finCercano = std::min(ms + 1, (antes + 2) * kTramoMs);
    for (std::int64_t r = cursorMs_; (r = cercanos_.ocupada(r, finCercano)) >= 0; ++r)
        soltar(cercanos_, r);
    cursorMs_ = ms + 1;
    // The stretch that is reached has been near since the one before it was.
    const std::int64_t finLejano =
        std::min(tramoDe(cursorMs_) + 2, antes + 2 + lejanos_.ranuras() - 2);
    for (std::int64_t r = antes + 2; (r = lejanos_.ocupada(r, finLejano)) >= 0; ++r)
        soltar(lejanos_, r);
    for (Temporizador* t : sueltos_) {
        if (!t->corre()) continue;
        if (t->venceUs_ / 1000 > ms) {
            archivar(*t);
        } else {
            vencidos_.push_back({t->venceUs_, t->orden_, t->puesto_});
            t->archivado_ = Temporizador::Archivado::Vencido;
        }
    }
    sueltos_.clear();
    if (!std::is_sorted(vencidos_.begin(), vencidos_.end())) // they are, as a rule
        std::sort(vencidos_.begin(), vencidos_.end());
    return !vencidos_.empty();
}

/// Those that were destroyed, switched off or armed anew meanwhile are none.
Temporizador* ColaDeTemporizadores::primerVencido() {
    for (; primerVencido_ < vencidos_.size(); ++primerVencido_) {
        const Vencido& v = vencidos_[primerVencido_];
        Temporizador* t = puestos_[v.puesto];
        if (t == nullptr || t->archivado_ != Temporizador::Archivado::Vencido) continue;
        if (t->corre() && t->orden_ == v.orden) return t;
        t->archivado_ = Temporizador::Archivado::No;
        if (t->corre()) archivar(*t);
    }
    vencidos_.clear();
    primerVencido_ = 0;
    return nullptr;
}

std::int64_t ColaDeTemporizadores::proximo() {
    if (const Temporizador* t = primerVencido()) return t->venceUs_;
    const std::int64_t cerca = proximoCercano();
    return cerca >= 0 ? cerca : proximoLejano();
}

std::int64_t ColaDeTemporizadores::proximoCercano() {
    const std::int64_t fin = (tramoDe(cursorMs_) + 2) * kTramoMs;
    for (std::int64_t r = cursorMs_; (r = cercanos_.ocupada(r, fin)) >= 0;) {
        auto& t = static_cast<Temporizador&>(*cercanos_.primero(r));
        if (t.corre() && t.venceUs_ / 1000 <= r) return t.venceUs_;
        desarchivar(t);
        if (t.corre()) archivar(t);
    }
    return -1;
}

std::int64_t ColaDeTemporizadores::proximoLejano() const {
    std::int64_t primero = -1;
    const std::int64_t actual = tramoDe(cursorMs_);
    const std::int64_t fin = actual + lejanos_.ranuras();
    // What is filed here may be due in a later stretch, never in an earlier one.
    for (std::int64_t r = actual + 2; (r = lejanos_.ocupada(r, fin)) >= 0; ++r) {
        if (primero >= 0 && r > tramoDe(primero / 1000)) break;
        const EnRueda* const cabeza = lejanos_.primero(r);
        const EnRueda* e = cabeza;
        do {
            const auto& t = static_cast<const Temporizador&>(*e);
            if (t.corre() && (primero < 0 || t.venceUs_ < primero)) primero = t.venceUs_;
            e = e->siguiente;
        } while (e != cabeza);
    }
    return primero;
}

bool ColaDeTemporizadores::ticar(std::int64_t ahoraUs) {
    Temporizador* t = primerVencido();
    if (t == nullptr && pasarHasta(ahoraUs / 1000)) t = primerVencido();
    if (t == nullptr) return false;
    tic(*t);
    return true;
}

bool ColaDeTemporizadores::ticarPuesto(std::uint32_t puesto) {
    Temporizador* t = puesto < puestos_.size() ? puestos_[puesto] : nullptr;
    if (t == nullptr || !t->corre()) return false;
    tic(*t);
    return true;
}

void ColaDeTemporizadores::tic(Temporizador& t) {
    desarchivar(t);
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
        std::count_if(puestos_.begin(), puestos_.end(),
                      [](const Temporizador* t) { return t != nullptr && t->corre(); }));
}

} // namespace kv
