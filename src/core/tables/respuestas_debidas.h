#pragma once

#include <cstddef>
#include <cstdint>

namespace kv {

/// Which answer may come next on a connection, and whether one that came can be told apart.
///
/// An answer does not say which register it answers. As long as every request is answered before
/// the next is sent that does not matter; after a time-out it does: the late answer of one register
/// must not be stored as the value of another. So the requests that are still owed an answer are
/// counted, together with the one register they ask for, if it is one:
/// - an answer counts when all requests that are owed one ask for the same register;
/// - another register is asked on trial while something is owed: the answer does not count, and
/// only
///   if the line stays quiet for three time-outs after it is what is missing written off
///   (`esperaAntesDe`). A dead station, a slow one and a network that holds everything back look
///   the same until then.
///
/// Values in, values out: the time is a parameter, in milliseconds of a clock that never goes back.
class RespuestasDebidas {
  public:
    /// What a request asks for, as the wire sees it: command, station byte and address byte.
    using Registro = std::uint32_t;

    /// A new link owes nothing.
    void vaciar() { *this = RespuestasDebidas{}; }
    /// A request leaves. `tiempoFueraMs` is how long its sender will wait.
    void alEnviar(Registro registro, std::int64_t ahora, std::int64_t tiempoFueraMs);
    /// A valid answer came while `registro` is being waited for. True: it is that register's.
    [[nodiscard]] bool alRecibir(Registro registro, std::int64_t ahora);
    /// An answer that nobody waits for, or a frame beyond the first in one arrival.
    void alSobrar(std::int64_t ahora);
    /// So many bytes that make no answer were thrown away: damaged, or parts of one that came in
    /// pieces. Every eight of them stood in the place of one.
    void alDescartar(std::size_t bytes, std::int64_t ahora);
    /// How long, in milliseconds, the line has to stay quiet before `registro` may be asked; 0:
    /// now.
    [[nodiscard]] std::int64_t esperaAntesDe(Registro registro, std::int64_t ahora);

    [[nodiscard]] std::uint32_t debidas() const { return debidas_; }
    /// Nothing is owed and nothing came unasked: any register may be asked.
    [[nodiscard]] bool nadaDebe() const { return debidas_ == 0 && !sospecha_; }
    /// Answers that came late, or that nobody had asked for, since the link came up.
    [[nodiscard]] std::uint64_t atrasadas() const { return atrasadas_; }
    /// The line has been held back since then without falling silent, or -1.
    [[nodiscard]] std::int64_t retenidaDesde() const { return retenidaDesde_; }
    [[nodiscard]] std::int64_t paciencia() const { return tiempoFueraMs_; }
    /// How long the line has to be quiet after a trial.
    [[nodiscard]] std::int64_t silencioMs() const { return kTiemposDeEspera * tiempoFueraMs_; }

  private:
    /// A station may be up to three times slower than its time-out before its answers are taken for
    /// lost.
    static constexpr std::int64_t kTiemposDeEspera = 3;
    static constexpr std::size_t kBytesPorRespuesta = 8;

    void saldar();

    std::uint32_t debidas_ = 0;
    Registro unico_ = 0; ///< what all owed requests ask for, unless `varios_`
    bool varios_ = false;
    bool aPrueba_ = false;    ///< the trial request is out
    bool trasPrueba_ = false; ///< the trial was answered: quiet now means that nothing more comes
    bool sospecha_ = false;   ///< something came that nobody was owed
    std::int64_t movimiento_ = 0;    ///< last request or answer
    std::int64_t tiempoFueraMs_ = 0; ///< the longest of those owed
    std::int64_t retenidaDesde_ = -1;
    std::uint32_t enviosDePrueba_ = 0;
    std::size_t bytesTirados_ = 0; ///< not yet a whole answer's
    std::uint64_t atrasadas_ = 0;
};

} // namespace kv
