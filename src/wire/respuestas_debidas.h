// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "wire/rotulos.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kv {

/// Whose answer an answer is.
///
/// An answer names no register. As long as every request is answered before the next is sent that
/// does not matter; after a time-out it does: the late answer of one register must not be stored as
/// the value of another. The requests that may still be answered are therefore remembered, and
/// there are three ways to tell:
/// - the stations say it themselves, in bytes that were learned (see Rotulos): late answers are
///   dropped at sight, and nothing waits;
/// - all of them ask for the same register: whichever is answered, the value is that register's;
/// - the line is let fall silent. An answer after the last request shows that the network carries,
///   and three time-outs of quiet behind it, that no station has anything left to say. Where no
///   answer has come, a request is sent on trial to get one: its answer does not count.
/// Counting the answers would be quicker than waiting, and wrong: a station may give one twice.
/// Bytes that are no answer say nothing, so they change nothing here.
///
/// Values in, values out: time is a parameter, in milliseconds of a clock that never goes back.
class RespuestasDebidas {
  public:
    using Registro = Rotulos::Registro;

    /// What there is to see of a valid answer.
    struct Respuesta {
        Rotulos::Rotulo rotulo = 0;
        std::uint16_t valor = 0;
        bool operator==(const Respuesta&) const = default;
    };
    struct Veredicto {
        enum class De : std::uint8_t {
            LoPedido, ///< number `cual` answers the outstanding request
            Otro,     ///< it is certain that no answer is its own: its time-out runs on
            NoSeSabe  ///< the try has failed: it may have been answered or not
        } de = De::Otro;
        std::size_t cual = 0;
    };

    /// A new link: nothing may still be answered, and who is at its other end is not known.
    void vaciar() { *this = RespuestasDebidas{}; }
    /// A request leaves. `tiempoFueraMs` is how long its sender will wait; `llego`: the other end
    /// has acknowledged every byte sent before it.
    void alEnviar(Registro registro, std::int64_t ahora, std::int64_t tiempoFueraMs, bool llego);
    /// The answers of one arrival, in their order, while the last request sent is being waited for.
    [[nodiscard]] Veredicto alRecibir(std::span<const Respuesta> respuestas, std::int64_t ahora);
    /// The same while nobody waits.
    void alSobrar(std::span<const Respuesta> respuestas, std::int64_t ahora);
    /// What is held may be the beginning of an answer.
    void alEmpezarOtra(std::int64_t ahora) { movimiento_ = ahora; }

    /// Whether `registro` may be asked so that its answer will count, and if not how long the line
    /// has to stay quiet first: 0 and not `cuenta` means that it is asked on trial.
    struct Permiso {
        bool cuenta = true;
        std::int64_t esperaMs = 0;
    };
    [[nodiscard]] Permiso permiso(Registro registro, std::int64_t ahora, bool llego) const;
    /// The line has to wait now; see `retenidaDesde`.
    void alRetener(std::int64_t ahora) {
        if (retenidaDesde_ < 0) retenidaDesde_ = ahora;
    }

    /// Nothing may still come: any register may be asked.
    [[nodiscard]] bool limpia() const { return debidas_.empty() && !sospecha_; }
    /// The stations tell their registers apart by themselves.
    [[nodiscard]] bool dicen() const { return rotulos_.dicen(); }
    /// The line has been held back since then without falling silent, or -1.
    [[nodiscard]] std::int64_t retenidaDesde() const { return retenidaDesde_; }
    [[nodiscard]] std::int64_t paciencia() const { return tiempoFueraMs_; }
    /// How long the line has to be quiet.
    [[nodiscard]] std::int64_t silencioMs() const { return kTiemposDeEspera * tiempoFueraMs_; }

    /// Hands every number that decides what is answered from now on to `f`, times relative to
    /// `ahora`: two with the same numbers behave the same. For whoever explores.
    template <class F>
    void recorrer(std::int64_t ahora, F&& f) const;

  private:
    /// A station may be up to three times slower than its time-out before its answers are taken for
    /// lost.
    static constexpr std::int64_t kTiemposDeEspera = 3;
    /// So many requests are told apart; a station that leaves more than these unanswered is let be.
    static constexpr std::size_t kDebidasMaximo = 64;
    /// After an answer that nobody had asked for, so many more are not trusted to be the last.
    static constexpr std::uint32_t kRecelo = 8;

    struct Debida {
        Registro registro = 0;
        std::int64_t enviada = 0;
        std::int64_t pasada = -1; ///< since then it is known to have reached its station
    };
    enum class De : std::uint8_t { LoPedido, Debida, Nadie, NoSeSabe };

    [[nodiscard]] std::int64_t faltaParaSilencio(std::int64_t ahora) const {
        return movimiento_ + silencioMs() - ahora;
    }
    [[nodiscard]] bool soloDebe(Registro registro) const;
    [[nodiscard]] bool rotulosDistinguen(Registro registro) const;
    [[nodiscard]] De deQuien(Rotulos::Rotulo rotulo) const;
    [[nodiscard]] Veredicto contar(std::span<const Respuesta> respuestas, std::size_t primera,
                                   std::size_t cuantas);
    void aceptarPorRotulo(std::int64_t ahora);
    void creer(const Respuesta& respuesta);
    [[nodiscard]] bool repetida(std::span<const Respuesta> respuestas, std::size_t k) const;
    void pasar(Rotulos::Rotulo rotulo, std::int64_t ahora);
    void pasarHasta(std::vector<Debida>::iterator hasta, std::int64_t ahora);
    void saldar();

    Rotulos rotulos_;
    std::vector<Debida> debidas_; ///< requests that may still be answered, oldest first
    bool desbordada_ = false;     ///< there are more of them than are remembered
    bool duda_ = false;           ///< more than one may be answered: it is not known which was
    bool sospecha_ = false;       ///< an answer came that no request had asked for
    bool prueba_ = false;         ///< an answer came after the last request: the network carries
    std::uint32_t recelo_ = 0;
    Respuesta ultima_; ///< the last that was believed, while nothing was sent since
    bool hayUltima_ = false;
    Registro enCurso_ = 0;
    bool negada_ = false; ///< an answer of no request was dropped while this one was waited for
    std::int64_t movimiento_ = 0;    ///< last request or answer
    std::int64_t tiempoFueraMs_ = 0; ///< the longest of those owed
    std::int64_t retenidaDesde_ = -1;
};

template <class F>
void RespuestasDebidas::recorrer(std::int64_t ahora, F&& f) const {
    rotulos_.recorrer(f);
    const auto hace = [&](std::int64_t t) {
        f(t < 0 ? -1 : std::min<std::int64_t>(ahora - t, silencioMs()));
    };
    for (const Debida& d : debidas_) {
        f(d.registro);
        hace(d.enviada);
        hace(d.pasada);
    }
    for (const std::int64_t n :
         {std::int64_t{desbordada_}, std::int64_t{duda_}, std::int64_t{sospecha_},
          std::int64_t{prueba_}, std::int64_t{negada_}, std::int64_t{recelo_},
          std::int64_t{hayUltima_}, hayUltima_ ? std::int64_t{ultima_.rotulo} : 0,
          hayUltima_ ? std::int64_t{ultima_.valor} : 0, std::int64_t{enCurso_}})
        f(n);
    hace(movimiento_);
    f(tiempoFueraMs_);
}

} // namespace kv
