// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/rueda.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

namespace kv {

class ColaDeTemporizadores;

/// What a tick calls: an operation of the timer's owner, with the number that tells its timers
/// apart.
struct AlTicar {
    void (*operacion)(void* objeto, std::uint32_t cual);
    void* objeto;
    std::uint32_t cual;

    /// AlTicar::a<&Clase::operacion>(objeto, cual); the object must outlive the timer.
    template <auto kOperacion, class Clase>
    [[nodiscard]] static AlTicar a(Clase& objeto, std::uint32_t cual) {
        return {[](void* de, std::uint32_t n) { (static_cast<Clase*>(de)->*kOperacion)(n); },
                &objeto, cual};
    }
};

/// A timer with the rules of a form's timer control: setting the interval of a running timer
/// restarts its countdown; enabling a running timer changes nothing; it ticks again and again until
/// disabled; a late timer ticks once; interval 0 never ticks. May be re-armed, disabled or
/// destroyed inside its own tick. There is one for each block and two for each connection, and an
/// exchange arms them all: each is one line of the processor's memory.
class alignas(64) Temporizador {
  public:
    /// `alTic` is called from the event loop that owns `cola`, which must outlive the timer.
    Temporizador(ColaDeTemporizadores& cola, AlTicar alTic);
    Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic);
    ~Temporizador();
    Temporizador(const Temporizador&) = delete;
    Temporizador& operator=(const Temporizador&) = delete;

    /// Milliseconds, 0 to 2^40 - 1 (35 years); values outside are brought to the nearest end.
    void fijarIntervalo(std::int64_t ms);
    [[nodiscard]] std::int64_t intervalo() const { return static_cast<std::int64_t>(intervaloMs_); }
    void habilitar(bool encendido);
    [[nodiscard]] bool habilitado() const { return habilitado_; }
    /// When it is due, on the loop's clock, while it runs.
    [[nodiscard]] std::int64_t venceMs() const { return venceUs_ / 1000; }
    /// Off, given the interval, on: a fresh countdown whatever the timer was doing.
    void rearmar(std::int64_t ms);
    /// The same, counted from a moment that is just past, on the loop's clock.
    void rearmar(std::int64_t ms, std::int64_t desdeUs);
    /// From now on it is off when it ticks.
    void tocarUnaVez() { unaVez_ = true; }

  private:
    friend class ColaDeTemporizadores;
    void anotarIntervalo(std::int64_t ms);
    [[nodiscard]] bool corre() const { return habilitado_ && intervaloMs_ > 0; }

    ColaDeTemporizadores& cola_;
    std::int64_t venceUs_ = 0; ///< due time, while it runs
    std::uint64_t orden_ = 0;  ///< when it was armed, counted in armings
    std::int64_t ranura_ = 0;  ///< where it is filed, while it is
    void (*operacion_)(void* objeto, std::uint32_t cual);
    void* objeto_;
    std::uint32_t cual_;
    std::uint32_t puesto_ = 0;
    enum class Archivado : std::uint8_t { No, Cerca, Lejos, Vencido };
    // In eight bytes together.
    std::uint64_t intervaloMs_ : 40 = 0;
    Archivado archivado_ = Archivado::No;
    bool habilitado_ = false;
    bool unaVez_ = false;
};
static_assert(sizeof(Temporizador) == 64);

/// All timers of a loop. They tick by due time and, at the same instant, in the order in which they
/// were armed. Arming costs the same however many there are: a timer is filed by the moment at
/// which it is to be looked at. One that is switched off or armed for later stays where it is until
/// that moment comes: most time-outs are answered long before they are due. One that is armed for
/// sooner, or destroyed, leaves its old entry behind, which means nothing when its slot is emptied.
class ColaDeTemporizadores {
  public:
    using LeerReloj = std::function<std::int64_t()>; ///< monotonic microseconds
    explicit ColaDeTemporizadores(LeerReloj reloj);

    /// Due time of the next tick in microseconds, or -1 when no timer runs. Always a whole
    /// millisecond, rounded up: no timer is ever early.
    [[nodiscard]] std::int64_t proximo();
    /// Ticks the first timer if it is due at `ahoraUs`; false if it is not. A timer that its own
    /// tick leaves running is due later than that.
    bool ticar(std::int64_t ahoraUs);
    /// Called before every tick with the timer's place, which depends on nothing but the order in
    /// which timers were made and destroyed; empty: not any more.
    void vigilar(std::function<void(std::uint32_t puesto)> alTicar) {
        alTicar_ = std::move(alTicar);
    }
    /// Ticks the timer of a place whatever the time is; false if no timer runs there.
    bool ticarPuesto(std::uint32_t puesto);
    /// Timers that run and will tick.
    [[nodiscard]] std::size_t encendidos() const;

  private:
    friend class Temporizador;
    /// Of the same millisecond, or of several that have passed unseen.
    struct Vencido {
        std::int64_t venceUs;
        std::uint64_t orden; ///< no two have the same
        std::uint32_t puesto;
        bool operator<(const Vencido& o) const {
            return venceUs != o.venceUs ? venceUs < o.venceUs : orden < o.orden;
        }
    };
    void anotar(Temporizador& t);
    void borrar(Temporizador& t);
    void armar(Temporizador& t) { armar(t, reloj_()); }
    void armar(Temporizador& t, std::int64_t desdeUs);
    using Archivado = Temporizador::Archivado;
    void archivar(Temporizador& t);
    void desarchivar(Temporizador& t);
    void archivarDeNuevo();
    void tic(Temporizador& t);
    void llamar(std::uint32_t puesto);

    [[nodiscard]] Temporizador* primerVencido();
    bool pasarHasta(std::int64_t ms);
    [[nodiscard]] Temporizador* archivadoEn(Archivado rueda, std::int64_t ranura,
                                            std::uint32_t puesto) const;
    void soltar(Archivado rueda, std::int64_t ranura);
    [[nodiscard]] std::int64_t proximoCercano();
    [[nodiscard]] std::int64_t proximoLejano() const;

    LeerReloj reloj_;
    std::function<void(std::uint32_t)> alTicar_;
    std::vector<Temporizador*> puestos_;
    std::vector<std::uint32_t> libres_;
    std::unordered_map<std::uint32_t, std::function<void()>> funciones_; ///< of those that have one
    std::uint64_t orden_ = 0;

    std::int64_t cursorMs_ = 0; ///< all that was filed for earlier has been looked at
    Rueda cercanos_;            ///< by milliseconds: this stretch of them and the next
    Rueda lejanos_;             ///< by stretches, the farthest for all that lies beyond
    std::size_t sobran_ = 0;    ///< entries of both that mean nothing
    std::vector<Vencido> vencidos_;
    std::size_t primerVencido_ = 0; ///< those before it have had their turn
    std::vector<Temporizador*> sueltos_;
};

} // namespace kv
