// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace kv {

/// What the stations of one connection put into the four bytes of an answer that are theirs to
/// fill. Many repeat a part of the request there, and then an answer can be told apart from another
/// register's; others put nothing useful, or what changes every time. Nobody says which, so it is
/// learned from answers whose register is certain for another reason.
///
/// Two things are learned. Of a register that has answered several times, the four bytes, if they
/// were the same each time. Of all registers together, the places among the four where the station
/// byte or the register byte of the request has always stood: those tell of a register that has
/// never answered.
class Rotulos {
  public:
    /// What a request asks for, as the wire sees it: command, station byte, register byte, from the
    /// third lowest byte down.
    using Registro = std::uint32_t;
    /// Bytes 1 to 4 of an answer, the first one highest.
    using Rotulo = std::uint32_t;

    enum class Juicio : std::uint8_t {
        Suyo,    ///< what this register's answers have always had
        Ajeno,   ///< not what this register's answers have always had
        NoSeSabe ///< too little is known of it
    };
    [[nodiscard]] Juicio juzgar(Registro registro, Rotulo rotulo) const;
    /// Whether the answers of two different requests differ for certain.
    [[nodiscard]] bool distingue(Registro a, Registro b) const;
    /// An answer that was certainly this register's.
    void aprender(Registro registro, Rotulo rotulo);
    /// What was learned turned out not to hold. It is learned anew, with more proof each time, and
    /// in the end of each register by itself only: not all stations of a line need be alike.
    void olvidar();
    /// The stations say what they answer, at least which register.
    [[nodiscard]] bool dicen() const { return probado(registro_); }

    template <class F>
    void recorrer(F&& f) const;

  private:
    static constexpr std::size_t kLugares = 4;
    static constexpr std::uint32_t kVeces = 3;
    static constexpr std::uint32_t kVecesMaximo = 12;

    struct Conocido {
        Registro registro = 0;
        Rotulo rotulo = 0;
        std::uint32_t veces = 0;
    };
    /// Of one byte of the request: the places where it has always stood, if it has varied.
    struct Repeticion {
        Rotulo distintos = 0; ///< a byte that is not 0: another one has stood in its place
        std::optional<std::uint8_t> primero;
        bool vario = false;
        [[nodiscard]] bool siempre(std::size_t lugar) const {
            return (distintos >> 8 * (kLugares - 1 - lugar) & 0xFF) == 0;
        }
        [[nodiscard]] bool nunca() const {
            return siempre(0) + siempre(1) + siempre(2) + siempre(3) == 0;
        }
    };
    [[nodiscard]] const Conocido* conocido(Registro registro) const;
    [[nodiscard]] bool probado(const Repeticion& r) const;
    [[nodiscard]] std::optional<Juicio> juzgarPor(const Repeticion& r, std::uint8_t byte,
                                                  Rotulo rotulo) const;
    static void notar(Repeticion& r, std::uint8_t byte, Rotulo rotulo);

    std::vector<Conocido> conocidos_; ///< by register
    Repeticion estacion_, registro_;
    std::uint32_t notadas_ = 0;
    std::uint32_t exigencia_ = kVeces; ///< equal answers before a register is believed
    bool generaliza_ = true;           ///< what repeats tells of registers never heard
};

/// Hands every number that decides what is answered from now on to `f`, for whoever explores.
template <class F>
void Rotulos::recorrer(F&& f) const {
    for (const Conocido& c : conocidos_) {
        f(c.registro);
        f(c.rotulo);
        f(std::min(c.veces, exigencia_));
    }
    for (const Repeticion* r : {&estacion_, &registro_}) {
        for (std::size_t k = 0; k < kLugares; ++k)
            f(r->siempre(k));
        f(r->vario);
        f(r->primero.value_or(0));
    }
    f(std::min(notadas_, 2 * exigencia_));
    f(exigencia_);
    f(generaliza_);
}

} // namespace kv
