// SPDX-License-Identifier: Apache-2.0
#include "script/log_de_guion.h"

#include "text/texto.h"

namespace kv {
namespace {

constexpr std::int64_t kMinutoMs = 60'000;

} // namespace

void LogDeGuion::anotar(std::string_view texto) {
    const std::int64_t ahora = reloj_.monotonicoMs();
    if (minutoMs_ < 0 || ahora - minutoMs_ >= kMinutoMs) {
        minutoMs_ = ahora;
        anotadas_ = 0;
    }
    if (anotadas_ > kPorMinuto) return;
    const bool ultima = anotadas_++ == kPorMinuto;
    log_.escribirLog("DRIVER", "mw.Log",
                     ultima ? "el guion anota demasiado: hasta que pase el minuto no se escribe mas"
                            : comienzo(texto, kLargo));
}

} // namespace kv
