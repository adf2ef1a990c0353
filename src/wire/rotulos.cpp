// SPDX-License-Identifier: Apache-2.0
#include "wire/rotulos.h"

#include <algorithm>

namespace kv {
namespace {

std::uint8_t byteDe(std::uint32_t palabra, std::size_t lugar) {
    return static_cast<std::uint8_t>(palabra >> 8 * (3 - lugar));
}
std::uint8_t estacionDe(Rotulos::Registro r) { return byteDe(r, 2); }
std::uint8_t registroDe(Rotulos::Registro r) { return byteDe(r, 3); }

constexpr auto antes = [](const auto& c, Rotulos::Registro r) { return c.registro < r; };

} // namespace

const Rotulos::Conocido* Rotulos::conocido(Registro registro) const {
    const auto i = std::lower_bound(conocidos_.begin(), conocidos_.end(), registro, antes);
    return i != conocidos_.end() && i->registro == registro && i->veces >= exigencia_ ? &*i
                                                                                      : nullptr;
}

/// A byte that never varied repeats nothing: it may stand there anyway.
bool Rotulos::probado(const Repeticion& r) const {
    return generaliza_ && r.vario && notadas_ >= 2 * exigencia_ && !r.nunca();
}

std::optional<Rotulos::Juicio> Rotulos::juzgarPor(const Repeticion& r, std::uint8_t byte,
                                                  Rotulo rotulo) const {
    if (!probado(r)) return std::nullopt;
    for (std::size_t k = 0; k < kLugares; ++k) {
        if (r.siempre(k) && byteDe(rotulo, k) != byte) return Juicio::Ajeno;
    }
    return Juicio::Suyo;
}

Rotulos::Juicio Rotulos::juzgar(Registro registro, Rotulo rotulo) const {
    if (const Conocido* c = conocido(registro))
        return c->rotulo == rotulo ? Juicio::Suyo : Juicio::Ajeno;
    const auto porRegistro = juzgarPor(registro_, registroDe(registro), rotulo);
    const auto porEstacion = juzgarPor(estacion_, estacionDe(registro), rotulo);
    if (porRegistro == Juicio::Ajeno || porEstacion == Juicio::Ajeno) return Juicio::Ajeno;
    return porRegistro || porEstacion ? Juicio::Suyo : Juicio::NoSeSabe;
}

bool Rotulos::distingue(Registro a, Registro b) const {
    if (probado(registro_) && registroDe(a) != registroDe(b)) return true;
    if (probado(estacion_) && estacionDe(a) != estacionDe(b)) return true;
    const Conocido* ca = conocido(a);
    const Conocido* cb = conocido(b);
    return ca != nullptr && cb != nullptr && ca->rotulo != cb->rotulo;
}

void Rotulos::notar(Repeticion& r, std::uint8_t byte, Rotulo rotulo) {
    r.distintos |= rotulo ^ byte * Rotulo{0x01010101};
    if (!r.primero) r.primero = byte;
    r.vario = r.vario || r.primero != byte;
}

void Rotulos::aprender(Registro registro, Rotulo rotulo) {
    auto i = std::lower_bound(conocidos_.begin(), conocidos_.end(), registro, antes);
    if (i == conocidos_.end() || i->registro != registro)
        i = conocidos_.insert(i, {registro, rotulo, 0});
    i->veces = i->rotulo == rotulo ? std::min(i->veces + 1, kVecesMaximo) : 1;
    i->rotulo = rotulo;
    notadas_ = std::min(notadas_ + 1, 2 * kVecesMaximo);
    notar(estacion_, estacionDe(registro), rotulo);
    notar(registro_, registroDe(registro), rotulo);
}

void Rotulos::olvidar() {
    const bool otraVez = generaliza_ && exigencia_ < kVecesMaximo;
    const std::uint32_t exigencia = std::min(exigencia_ * 2, kVecesMaximo);
    *this = {};
    exigencia_ = exigencia;
    generaliza_ = otraVez;
}

} // namespace kv
