// SPDX-License-Identifier: Apache-2.0
#include "script/log_de_guion.h"

#include "text/texto.h"

#include <utility>

namespace kv {

void LogDeGuion::anotar(std::string_view texto) {
    if (cupo_.tomar(reloj_.monotonicoMs(), kPorMinuto)) {
        dicho_ = false;
        log_.escribirLog("DRIVER", "mw.Log", comienzo(texto, kLargo));
    } else if (!std::exchange(dicho_, true)) {
        log_.escribirLog("DRIVER", "mw.Log",
                         "el guion anota demasiado: hasta que pase el minuto no se escribe mas");
    }
}

} // namespace kv
