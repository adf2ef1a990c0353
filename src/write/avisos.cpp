#include "write/avisos.h"

#include "text/numeros.h"

namespace kv {

std::string direccionDe(const BloqueEscritura& escritura) {
    return escritura.esBit() ? escritura.clave + "." + textoDeNumero(escritura.bit)
                             : escritura.clave;
}

} // namespace kv
