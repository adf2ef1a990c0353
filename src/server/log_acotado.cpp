// SPDX-License-Identifier: Apache-2.0
#include "server/log_acotado.h"

#include "text/nombre_del_programa.h"

namespace kv {
namespace {

constexpr std::string_view kModulo = kNombreDelPrograma;

} // namespace

void LogAcotado::escribir(std::string_view procedimiento, std::string_view mensaje,
                          std::string_view descripcion, Novedad novedad) {
    alPasarElTiempo();
    if (cupo_.tomar(reloj_.monotonicoMs(), kPorMinuto))
        log_.escribir({kModulo, procedimiento, mensaje, descripcion, novedad});
}

void LogAcotado::alPasarElTiempo() { contar(cupo_.negados(reloj_.monotonicoMs())); }

void LogAcotado::contar(std::uint64_t calladas) {
    if (calladas > 0)
        log_.escribirLog(kModulo, "Servidor", "y " + std::to_string(calladas) + " entradas mas");
}

} // namespace kv
