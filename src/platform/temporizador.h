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
    /// Off, given the interval, on: a fresh countdown whatever the timer was doing.
    void rearmar(std::int64_t ms);

  private:
    friend class ColaDeTemporizadores;
    static constexpr std::size_t kFuera = static_cast<std::size_t>(-1);

    ColaDeTemporizadores& cola_;
    std::function<void()> alTic_;
    std::int64_t venceUs_ = 0;
    std::uint64_t orden_ = 0;
    std::size_t lugar_ = kFuera; ///< position in the heap
    std::int32_t intervaloMs_ = 0;
    bool habilitado_ = false;
};

/// All timers of a loop in one heap, by due time and, at the same instant, by the order in which
/// they were armed.
class ColaDeTemporizadores {
  public:
    using LeerReloj = std::function<std::int64_t()>; ///< monotonic microseconds
    explicit ColaDeTemporizadores(LeerReloj reloj) : reloj_(std::move(reloj)) {}

    /// Due time of the next tick in microseconds, or -1 when no timer runs. Always a whole
    /// millisecond, rounded up: no timer is ever early.
    [[nodiscard]] std::int64_t proximo() const {
        return monticulo_.empty() ? -1 : monticulo_.front()->venceUs_;
    }
    /// Ticks the first timer if it is due at `ahoraUs` and was armed before mark `hastaOrden` (so
    /// that one turn of the loop ticks nothing that the turn itself armed). False if none did.
    bool ticar(std::int64_t ahoraUs, std::uint64_t hastaOrden);
    /// The mark for `ticar`: everything armed from now on lies beyond it.
    [[nodiscard]] std::uint64_t marca() const { return orden_; }
    [[nodiscard]] std::size_t encendidos() const { return monticulo_.size(); }

  private:
    friend class Temporizador;
    void armar(Temporizador& t);
    void quitar(Temporizador& t);
    void colocar(std::size_t lugar, Temporizador* t);
    void subir(std::size_t lugar);
    void bajar(std::size_t lugar);
    [[nodiscard]] static bool antes(const Temporizador* a, const Temporizador* b);

    LeerReloj reloj_;
    std::vector<Temporizador*> monticulo_;
    std::uint64_t orden_ = 0;
};

} // namespace kv
