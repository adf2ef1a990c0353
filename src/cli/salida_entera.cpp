// SPDX-License-Identifier: Apache-2.0
#include "cli/salida_entera.h"

#include <ostream>

namespace kv {

int conSalidaEntera(int codigo, std::string_view programa, std::ostream& salida,
                    std::ostream& errores) {
    if (salida.flush() || codigo != 0) return codigo;
    errores << programa << ": no se pudo escribir todo en la salida\n";
    return 1;
}

} // namespace kv
