// SPDX-License-Identifier: Apache-2.0
#include "platform/temporizador.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::int64_t kTramoMs = 4096; // what the far slots are long; two of them are near
constexpr std::size_t kTramos = 4096;   // 4.6 hours: a timer for later is looked at once or more
constexpr std::size_t kSobran = 1024;   // entries that mean nothing, beside one a timer

std::int64_t tramoDe(std::int64_t ms) { return ms / kTramoMs; }

} // namespace

ColaDeTemporizadores::ColaDeTemporizadores(LeerReloj reloj)
    : reloj_(std::move(reloj)), cercanos_(2 * kTramoMs), lejanos_(kTramos) {}

Temporizador::Temporizador(ColaDeTemporizadores& cola, AlTicar alTic)
    : cola_(cola), operacion_(alTic.operacion), objeto_(alTic.objeto), cual_(alTic.cual) {
    cola_.anotar(*this);
}

Temporizador::Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic)
    : Temporizador(cola, AlTicar::a<&ColaDeTemporizadores::llamar>(cola, 0)) {
    cual_ = puesto_;
    cola_.funciones_[puesto_] = std::move(alTic);
}

Temporizador::~Temporizador() { cola_.borrar(*this); }

void Temporizador::anotarIntervalo(std::int64_t ms) {
    constexpr std::int64_t kMaximo = (std::int64_t{1} << 40) - 1;
    // The mask changes nothing; it tells the compiler that the number fits.
    intervaloMs_ = static_cast<std::uint64_t>(std::clamp<std::int64_t>(ms, 0, kMaximo)) & kMaximo;
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
    funciones_.erase(t.puesto_);
    libres_.push_back(t.puesto_);
}

void ColaDeTemporizadores::armar(Temporizador& t, std::int64_t desdeUs) {
    if (t.intervaloMs_ == 0) return;
    const std::int64_t exacto = desdeUs + t.intervalo() * 1000;
    t.venceUs_ = (exacto + 999) / 1000 * 1000;
    t.orden_ = ++orden_;
    const std::int64_t ms = t.venceUs_ / 1000;
    // Where it is looked at no later than that it stays: its proper place is found then.
    if (t.archivado_ == Archivado::Vencido ||
        (t.archivado_ == Archivado::Cerca && t.ranura_ <= ms) ||
        (t.archivado_ == Archivado::Lejos && t.ranura_ <= tramoDe(ms)))
        return;
    desarchivar(t);
    // Not where one is destroyed: this wants memory.
    if (sobran_ > kSobran + puestos_.size()) archivarDeNuevo();
    archivar(t);
}

void ColaDeTemporizadores::archivar(Temporizador& t) {
    const std::int64_t ms = std::max(t.venceUs_ / 1000, cursorMs_);
    const std::int64_t tramo = tramoDe(ms);
    const std::int64_t actual = tramoDe(cursorMs_);
    const bool cerca = tramo <= actual + 1;
    t.archivado_ = cerca ? Archivado::Cerca : Archivado::Lejos;
    t.ranura_ = cerca ? ms : std::min(tramo, actual + lejanos_.ranuras() - 1);
    (cerca ? cercanos_ : lejanos_).poner(t.puesto_, t.ranura_);
}

void ColaDeTemporizadores::desarchivar(Temporizador& t) {
    if (t.archivado_ == Archivado::Cerca || t.archivado_ == Archivado::Lejos) ++sobran_;
    t.archivado_ = Archivado::No;
}

/// Everything in its place, and nothing else.
void ColaDeTemporizadores::archivarDeNuevo() {
    cercanos_ = Rueda(2 * kTramoMs);
    lejanos_ = Rueda(kTramos);
    sobran_ = 0;
    for (Temporizador* t : puestos_) {
        if (t == nullptr || t->archivado_ == Archivado::Vencido) continue;
        if (std::exchange(t->archivado_, Archivado::No) != Archivado::No && t->corre())
            archivar(*t);
    }
}

/// The timer that an entry stands for, null for one that means nothing any more.
Temporizador* ColaDeTemporizadores::archivadoEn(Archivado rueda, std::int64_t ranura,
                                                std::uint32_t puesto) const {
    Temporizador* t = puestos_[puesto];
    return t != nullptr && t->archivado_ == rueda && t->ranura_ == ranura ? t : nullptr;
}

/// All that a slot holds, out of it.
void ColaDeTemporizadores::soltar(Archivado rueda, std::int64_t ranura) {
    const Rueda::Entradas entradas =
        (rueda == Archivado::Cerca ? cercanos_ : lejanos_).vaciar(ranura);
    for (const std::uint32_t puesto : entradas) {
        if (Temporizador* t = archivadoEn(rueda, ranura, puesto)) {
            t->archivado_ = Archivado::No;
            sueltos_.push_back(t);
        } else {
            --sobran_;
        }
    }
}

/// Looks at all that is filed up to `ms`. False if nothing is due.
bool ColaDeTemporizadores::pasarHasta(std::int64_t ms) {
    if (ms < cursorMs_) return false;
    const std::int64_t antes = tramoDe(cursorMs_);
    const std::int64_t finCercano = std::min(ms + 1, (antes + 2) * kTramoMs);
    for (std::int64_t r = cursorMs_; (r = cercanos_.ocupada(r, finCercano)) >= 0; ++r)
        soltar(Archivado::Cerca, r);
    cursorMs_ = ms + 1;
    // The stretch that is reached has been near since the one before it was.
    const std::int64_t finLejano =
        std::min(tramoDe(cursorMs_) + 2, antes + 2 + lejanos_.ranuras() - 2);
    for (std::int64_t r = antes + 2; (r = lejanos_.ocupada(r, finLejano)) >= 0; ++r)
        soltar(Archivado::Lejos, r);
    for (Temporizador* t : sueltos_) {
        if (!t->corre()) continue;
        if (t->venceUs_ / 1000 > ms) {
            archivar(*t);
        } else {
            vencidos_.push_back({t->venceUs_, t->orden_, t->puesto_});
            t->archivado_ = Archivado::Vencido;
        }
    }
    sueltos_.clear();
    if (!std::is_sorted(vencidos_.begin(), vencidos_.end())) // they are, as a rule
        std::sort(vencidos_.begin(), vencidos_.end());
    return !vencidos_.empty();
}

/// Entries of timers that were destroyed, switched off or armed anew meanwhile no longer count.
Temporizador* ColaDeTemporizadores::primerVencido() {
    for (; primerVencido_ < vencidos_.size(); ++primerVencido_) {
        const Vencido& v = vencidos_[primerVencido_];
        Temporizador* t = puestos_[v.puesto];
        if (t == nullptr || t->archivado_ != Archivado::Vencido) continue;
        if (t->corre() && t->orden_ == v.orden) return t;
        t->archivado_ = Archivado::No;
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
        Temporizador* t = archivadoEn(Archivado::Cerca, r, cercanos_[r].back());
        if (t != nullptr && t->corre() && t->venceUs_ / 1000 <= r) return t->venceUs_;
        cercanos_.sacarUltima(r);
        if (t == nullptr) {
            --sobran_;
            continue;
        }
        t->archivado_ = Archivado::No;
        if (t->corre()) archivar(*t);
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
        for (const std::uint32_t puesto : lejanos_[r]) {
            const Temporizador* t = archivadoEn(Archivado::Lejos, r, puesto);
            if (t != nullptr && t->corre() && (primero < 0 || t->venceUs_ < primero))
                primero = t->venceUs_;
        }
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
    t.operacion_(t.objeto_, t.cual_);
}

void ColaDeTemporizadores::llamar(std::uint32_t puesto) {
    const auto alTic = funciones_.at(puesto); // the handler may destroy its own timer
    alTic();
}

std::size_t ColaDeTemporizadores::encendidos() const {
    return static_cast<std::size_t>(
        std::count_if(puestos_.begin(), puestos_.end(),
                      [](const Temporizador* t) { return t != nullptr && t->corre(); }));
}

} // namespace kv
