// SPDX-License-Identifier: Apache-2.0
#include "memoria.h"

#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace kv::fallas {
namespace {

struct Cuenta {
    long mala = 0; ///< the allocation to fail, 0: let all succeed
    bool siempre = false;
    long pedidas = 0, falladas = 0, vivas = 0, bytes = 0;
};
Cuenta cuenta; // NOLINT: operator new has no other place for it

void* tomar(std::size_t n, std::size_t alineacion) {
    const long cual = ++cuenta.pedidas;
    const bool mala =
        cuenta.mala > 0 && (cual == cuenta.mala || (cuenta.siempre && cual > cuenta.mala));
    if (mala) ++cuenta.falladas;
    void* p = nullptr;
    if (!mala && alineacion <= alignof(std::max_align_t))
        p = std::malloc(n == 0 ? 1 : n);
    else if (!mala)
        p = std::aligned_alloc(alineacion, (n + alineacion - 1) / alineacion * alineacion);
    if (p == nullptr) throw std::bad_alloc();
    ++cuenta.vivas;
    cuenta.bytes += static_cast<long>(malloc_usable_size(p));
    return p;
}

void dejar(void* p) noexcept {
    if (p == nullptr) return;
    --cuenta.vivas;
    cuenta.bytes -= static_cast<long>(malloc_usable_size(p));
    std::free(p);
}

} // namespace

void Memoria::fallarEn(long enesima, bool desdeAhi) {
    noFallarMas();
    cuenta.mala = enesima;
    cuenta.siempre = desdeAhi;
}
void Memoria::noFallarMas() { cuenta.mala = cuenta.pedidas = cuenta.falladas = 0; }
long Memoria::pedidas() { return cuenta.pedidas; }
long Memoria::falladas() { return cuenta.falladas; }
long Memoria::vivas() { return cuenta.vivas; }
long Memoria::bytesVivos() { return cuenta.bytes; }

} // namespace kv::fallas

void* operator new(std::size_t n) { return kv::fallas::tomar(n, 1); }
void* operator new(std::size_t n, const std::nothrow_t& /*t*/) noexcept {
    try {
        return kv::fallas::tomar(n, 1);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new(std::size_t n, std::align_val_t a) {
    return kv::fallas::tomar(n, static_cast<std::size_t>(a));
}
void operator delete(void* p) noexcept { kv::fallas::dejar(p); }
void operator delete(void* p, std::size_t /*n*/) noexcept { kv::fallas::dejar(p); }
void operator delete(void* p, std::align_val_t /*a*/) noexcept { kv::fallas::dejar(p); }
void operator delete(void* p, std::size_t /*n*/, std::align_val_t /*a*/) noexcept {
    kv::fallas::dejar(p);
}
