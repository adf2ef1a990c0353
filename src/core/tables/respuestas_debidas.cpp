#include "core/tables/respuestas_debidas.h"

#include <algorithm>

namespace kv {
namespace {

// A station may be up to three times slower than its time-out before its answers are taken for
// lost.
constexpr std::int64_t kTiemposDeEspera = 3;
// After waiting in vain so often in a row, a line whose stations are silent rather than slow is
// made to wait less: just more than the distance between two tries, so that late answers still
// show.
constexpr std::uint32_t kVanasHastaAcortar = 3;

} // namespace

void RespuestasDebidas::saldar() {
    debidas_ = 0;
    enviosDePrueba_ = 0;
    varios_ = aPrueba_ = trasPrueba_ = sospecha_ = algoLlego_ = false;
    retenidaDesde_ = -1;
}

/// Stops waiting for what has not come.
void RespuestasDebidas::perdonar() {
    ++vanas_;
    saldar();
}

void RespuestasDebidas::alEnviar(Registro registro, std::int64_t ahora,
                                 std::int64_t tiempoFueraMs) {
    if (trasPrueba_ && ahora - movimiento_ >= tiempoFueraMs_) perdonar();
    if (debidas_ == 0) {
        unico_ = registro;
        varios_ = false;
        tiempoFueraMs_ = tiempoFueraMs;
    } else if (unico_ != registro) {
        varios_ = true;
    }
    ++debidas_;
    if (aPrueba_) ++enviosDePrueba_;
    algoLlego_ = false;
    movimiento_ = ahora;
    retenidaDesde_ = -1;
    tiempoFueraMs_ = std::max(tiempoFueraMs_, tiempoFueraMs);
}

bool RespuestasDebidas::alRecibir(Registro registro, std::int64_t ahora) {
    movimiento_ = ahora;
    algoLlego_ = true;
    const bool cierta = !varios_ && (unico_ == registro || debidas_ == 0);
    if (debidas_ > 1) ++atrasadas_;
    // The answer to a repeated request may be that of the first try.
    if (debidas_ > 1 && cierta) huboAtraso_ = true;
    if (debidas_ > 0) --debidas_;
    if (debidas_ == 0) {
        saldar();
    } else if (!cierta) {
        trasPrueba_ = enviosDePrueba_ == 1; // after a retry, the other try may still be answered
    }
    return cierta;
}

void RespuestasDebidas::alSobrar(std::int64_t ahora) {
    movimiento_ = ahora;
    algoLlego_ = true;
    trasPrueba_ = false;
    vanas_ = 0;
    huboAtraso_ = true;
    ++atrasadas_;
    if (debidas_ == 0) {
        sospecha_ = true;
        return;
    }
    if (--debidas_ == 0) saldar();
}

void RespuestasDebidas::alDescartar(std::int64_t ahora) {
    movimiento_ = ahora;
    if (debidas_ == 0) return;
    if (--debidas_ == 0) saldar();
}

std::int64_t RespuestasDebidas::esperaAntesDe(Registro registro, std::int64_t ahora) {
    if (debidas_ == 0 && !sospecha_) return 0;
    if (debidas_ > 0 && !varios_ && unico_ == registro && !sospecha_) return 0;
    const std::int64_t quieta = ahora - movimiento_;
    const bool nuncaTarde = !huboAtraso_ && vanas_ >= kVanasHastaAcortar;
    const std::int64_t larga =
        nuncaTarde ? tiempoFueraMs_ * 3 / 2 : kTiemposDeEspera * tiempoFueraMs_;
    const std::int64_t hasta = trasPrueba_ || debidas_ == 0 ? tiempoFueraMs_ : larga;
    if (quieta < hasta) {
        if (retenidaDesde_ < 0) retenidaDesde_ = ahora;
        return hasta - quieta;
    }
    // Quiet long enough. If the line spoke after the last request it is alive, and what it has not
    // brought by now is lost; if it never did, only a trial can tell.
    if (trasPrueba_ || algoLlego_ || debidas_ == 0) {
        perdonar();
    } else {
        aPrueba_ = true;
        enviosDePrueba_ = 0;
    }
    retenidaDesde_ = -1;
    return 0;
}

} // namespace kv
