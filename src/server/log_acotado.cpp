// SPDX-License-Identifier: Apache-2.0
#include "server/log_acotado.h"

#include "text/nombre_del_programa.h"

namespace kv {
namespace {

constexpr std::string_view kModulo = kNombreDelPrograma;
constexpr std::int64_t kMinutoMs = 60'000;

} // namespace

void LogAcotado::escribir(std::string_view procedimiento, std::string_view mensaje,
                          std::string_view descripcion, Novedad novedad) {
    alPasarElTiempo();
    if (escritas_ == 0) minutoMs_ = reloj_.monotonicoMs();
    if (escritas_ == kPorMinuto) {
        ++calladas_;
        return;
    }
    ++escritas_;
    log_.escribir({kModulo, procedimiento, mensaje, descripcion, novedad});
}

void LogAcotado::alPasarElTiempo() {
    if (escritas_ == 0 || reloj_.monotonicoMs() - minutoMs_ < kMinutoMs) return;
    if (calladas_ > 0)
        log_.escribirLog(kModulo, "Servidor", "y " + std::to_string(calladas_) + " entradas mas");
    escritas_ = 0;
    calladas_ = 0;
}

} // namespace kv
