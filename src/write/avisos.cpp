#include "write/avisos.h"

#include "text/numeros.h"

namespace kv {

std::string_view palabras(FinDeEscritura fin) {
    switch (fin) {
    case FinDeEscritura::Confirmada:
        return "confirmada";
    case FinDeEscritura::SinRespuesta:
        return "sin respuesta";
    case FinDeEscritura::ConexionPerdida:
        return "conexion perdida";
    case FinDeEscritura::PalabraDesconocida:
        return "no se pudo leer la palabra del bit";
    case FinDeEscritura::Vencida:
        return "espero demasiado";
    case FinDeEscritura::ProgramaTerminado:
        return "termino el programa";
    }
    return "";
}

std::string direccionDe(const BloqueEscritura& escritura) {
    return escritura.esBit() ? escritura.clave + "." + textoDeNumero(escritura.bit)
                             : escritura.clave;
}

} // namespace kv
