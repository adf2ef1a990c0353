// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <coroutine>
#include <cstdint>
#include <exception>
#include <limits>
#include <utility>

namespace kv {

/// A long work that lays itself down where its portion is used up, and goes on from there: a
/// coroutine that spends its `Porciones`. It may wait for others like it, which are parts of it.
/// What it is given by reference must outlive it, so texts are given by value. Whoever destroys it
/// ends it where it is.
class [[nodiscard]] Trabajo {
  public:
    struct promise_type;
    using Mango = std::coroutine_handle<promise_type>;

    explicit Trabajo(Mango mango) : mango_(mango) {}
    Trabajo(Trabajo&& otro) noexcept : mango_(std::exchange(otro.mango_, {})) {}
    Trabajo(const Trabajo&) = delete;
    Trabajo& operator=(const Trabajo&) = delete;
    Trabajo& operator=(Trabajo&&) = delete;
    ~Trabajo() {
        if (mango_) mango_.destroy();
    }

    [[nodiscard]] bool terminado() const { return mango_.done(); }
    /// From its beginning to where it lays itself down.
    void empezar() { mango_.resume(); }
    /// Throws what ended it.
    void relanzar() const;

    // What waits for it begins it, and goes on when it is done.
    bool await_ready() {
        empezar();
        return terminado();
    }
    void await_suspend(std::coroutine_handle<> quien) noexcept;
    void await_resume() const { relanzar(); }

  private:
    Mango mango_;
};

struct Trabajo::promise_type {
    struct AlFinal {
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        [[nodiscard]] std::coroutine_handle<> await_suspend(Mango mango) const noexcept {
            const auto quien = mango.promise().sigue;
            return quien ? quien : std::noop_coroutine();
        }
        void await_resume() const noexcept {}
    };
    Trabajo get_return_object() { return Trabajo(Mango::from_promise(*this)); }
    std::suspend_always initial_suspend() noexcept { return {}; }
    AlFinal final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { falla = std::current_exception(); }

    std::coroutine_handle<> sigue;
    std::exception_ptr falla;
};

inline void Trabajo::relanzar() const {
    if (mango_.promise().falla) std::rethrow_exception(mango_.promise().falla);
}

inline void Trabajo::await_suspend(std::coroutine_handle<> quien) noexcept {
    mango_.promise().sigue = quien;
}

/// How much of a work is done at a stretch. Its steps say what they cost, in tenths of a
/// microsecond of some machine, so that where it pauses depends on what it does and on no clock.
class Porciones {
  public:
    /// Without a size there is one portion, for all.
    explicit Porciones(std::int64_t tamano = std::numeric_limits<std::int64_t>::max())
        : tamano_(tamano), resta_(tamano) {}
    void fijarTamano(std::int64_t tamano) { tamano_ = tamano; }

    struct Paso {
        Porciones& de;
        [[nodiscard]] bool await_ready() const noexcept { return de.resta_ > 0; }
        void await_suspend(std::coroutine_handle<> mango) const noexcept { de.donde_ = mango; }
        void await_resume() const noexcept {}
    };
    /// To be awaited in the work, between two steps of it.
    [[nodiscard]] Paso gastar(std::int64_t costo) {
        resta_ -= costo;
        return {*this};
    }
    /// The next portion of a work, the first at first. True when it is done; throws what ended it.
    bool hacer(Trabajo& trabajo) {
        resta_ = tamano_;
        if (donde_) {
            std::exchange(donde_, {}).resume();
        } else {
            trabajo.empezar();
        }
        if (!trabajo.terminado()) return false;
        trabajo.relanzar();
        return true;
    }

  private:
    std::int64_t tamano_;
    std::int64_t resta_;
    std::coroutine_handle<> donde_;
};

} // namespace kv
