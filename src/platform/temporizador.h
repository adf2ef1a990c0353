// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace kv {

class ColaDeTemporizadores;

/// A timer with the rules of a form's timer control: setting the interval of a running timer
/// restarts its countdown; enabling a running timer changes nothing; it ticks again and again until
/// disabled; a late timer ticks once; interval 0 never ticks. May be re-armed, disabled or
/// destroyed inside its own tick.
class Temporizador {
  public:
    /// `alTic` is called from the event loop that owns `cola`, which must outlive the timer.
    Temporizador(ColaDeTemporizadores& cola, std::function<void()> alTic);
    ~Temporizador();
    Temporizador(const Temporizador&) = delete;
    Temporizador& operator=(const Temporizador&) = delete;

    /// Milliseconds, 0 to 2^31 - 1; values outside are brought to the nearest end.
    void fijarIntervalo(std::int64_t ms);
    [[nodiscard]] std::int64_t intervalo() const { return intervaloMs_; }
    void habilitar(bool encendido);
    [[nodiscard]] bool habilitado() const { return habilitado_; }
    /// When it is due, on the loop's clock, while it runs.
    [[nodiscard]] std::int64_t venceMs() const { return venceUs_ / 1000; }
    /// Off, given the interval, on: a fresh countdown whatever the timer was doing.
    void rearmar(std::int64_t ms);
    /// From now on it is off when it ticks.
    void tocarUnaVez() { unaVez_ = true; }

  private:
    friend class ColaDeTemporizadores;

    ColaDeTemporizadores& cola_;
    std::int64_t venceUs_ = 0;  ///< due time, while it runs
    std::uint64_t orden_ = 0;   ///< when it was armed, counted in armings
    std::uint64_t entrada_ = 0; ///< the order of its valid entry in the queue, 0 if none
    std::int64_t venceEntradaUs_ = 0;
    std::uint32_t puesto_ = 0;
    std::int32_t intervaloMs_ = 0;
    bool habilitado_ = false;
    bool unaVez_ = false;
    std::function<void()> alTic_;
};

/// All timers of a loop in one heap, by due time and, at the same instant, by the order in which
/// they were armed. A timer that is switched off or armed for later leaves its entry where it is
/// until it comes up: most time-outs are answered long before they are due, and moving their
/// entries about would cost more than everything else about an exchange.
class ColaDeTemporizadores {
  public:
    using LeerReloj = std::function<std::int64_t()>; ///< monotonic microseconds
    explicit ColaDeTemporizadores(LeerReloj reloj) : reloj_(std::move(reloj)) {}

    /// Due time of the next tick in microseconds, or -1 when no timer runs. Always a whole
    /// millisecond, rounded up: no timer is ever early.
    [[nodiscard]] std::int64_t proximo();
    /// Ticks the first timer if it is due at `ahoraUs`; false if none is. A timer that its own tick
    /// leaves running is due later than that.
    bool ticar(std::int64_t ahoraUs);
    /// Called before every tick with the timer's place, which depends on nothing but the order in
    /// which timers were made and destroyed; empty: not any more.
    void vigilar(std::function<void(std::uint32_t puesto)> alTicar) {
        alTicar_ = std::move(alTicar);
    }
    /// Ticks the timer of a place whatever the time is; false if none runs there.
    bool ticarPuesto(std::uint32_t puesto);
    /// Timers that run and will tick.
    [[nodiscard]] std::size_t encendidos() const;

  private:
    friend class Temporizador;
    struct Entrada {
        std::int64_t venceUs;
        std::uint64_t orden; ///< no two entries have the same
        std::uint32_t puesto;
        bool operator<(const Entrada& o) const {
            return venceUs != o.venceUs ? venceUs < o.venceUs : orden < o.orden;
        }
    };
    void anotar(Temporizador& t);
    void borrar(Temporizador& t);
    void armar(Temporizador& t);
    void meter(Temporizador& t);
    void sacarPrimera();
    void bajarDesde(std::size_t hueco, const Entrada& e);
    void compactar();
    [[nodiscard]] Temporizador* duenio(const Entrada& e) const;

    void tic(Temporizador& t);

    LeerReloj reloj_;
    std::function<void(std::uint32_t)> alTicar_;
    std::vector<Entrada> monticulo_;
    std::vector<Temporizador*> puestos_;
    std::vector<std::uint32_t> libres_;
    std::uint64_t orden_ = 0;
};

} // namespace kv
