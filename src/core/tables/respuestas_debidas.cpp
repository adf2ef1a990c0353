#include "core/tables/respuestas_debidas.h"

#include <algorithm>

namespace kv {
void RespuestasDebidas::saldar() {
    debidas_ = 0;
    enviosDePrueba_ = 0;
    varios_ = aPrueba_ = trasPrueba_ = sospecha_ = false;
    retenidaDesde_ = -1;
}

void RespuestasDebidas::alEnviar(Registro registro, std::int64_t ahora,
                                 std::int64_t tiempoFueraMs) {
    if (trasPrueba_ && ahora - movimiento_ >= silencioMs()) saldar();
    if (debidas_ == 0) {
        unico_ = registro;
        varios_ = false;
        bytesTirados_ = 0; // of nobody's answer
        tiempoFueraMs_ = tiempoFueraMs;
    } else if (unico_ != registro) {
        varios_ = true;
    }
    ++debidas_;
    if (aPrueba_) ++enviosDePrueba_;
    movimiento_ = ahora;
    retenidaDesde_ = -1;
    tiempoFueraMs_ = std::max(tiempoFueraMs_, tiempoFueraMs);
}

bool RespuestasDebidas::alRecibir(Registro registro, std::int64_t ahora) {
    movimiento_ = ahora;
    const bool cierta = !varios_ && (unico_ == registro || debidas_ == 0);
    if (debidas_ > 1) ++atrasadas_;
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
    trasPrueba_ = false;
    ++atrasadas_;
    if (debidas_ == 0) {
        sospecha_ = true;
        return;
    }
    if (--debidas_ == 0) saldar();
}

void RespuestasDebidas::alDescartar(std::size_t bytes, std::int64_t ahora) {
    if (bytes == 0) return;
    movimiento_ = ahora;
    bytesTirados_ += bytes;
    const std::size_t enteras = bytesTirados_ / kBytesPorRespuesta;
    bytesTirados_ %= kBytesPorRespuesta;
    if (debidas_ == 0 || enteras == 0) return;
    debidas_ -= static_cast<std::uint32_t>(std::min<std::size_t>(debidas_, enteras));
    if (debidas_ == 0) saldar();
}

std::int64_t RespuestasDebidas::esperaAntesDe(Registro registro, std::int64_t ahora) {
    if (debidas_ == 0 && !sospecha_) return 0;
    if (debidas_ > 0 && !varios_ && unico_ == registro && !sospecha_) return 0;
    if (trasPrueba_ || debidas_ == 0) {
        const std::int64_t falta = movimiento_ + silencioMs() - ahora;
        if (falta > 0) {
            if (retenidaDesde_ < 0) retenidaDesde_ = ahora;
            return falta;
        }
        saldar();
        return 0;
    }
    aPrueba_ = true;
    enviosDePrueba_ = 0;
    retenidaDesde_ = -1;
    return 0;
}

} // namespace kv
