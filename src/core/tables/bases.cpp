#include "core/tables/bases.h"

#include "text/numeros.h"

namespace kv {

std::string_view textoEstado(double codigo) {
    if (codigo == kOk) return "OK";
    return codigo == kBad ? "BAD" : "";
}

void establecerBaseDeTiempoEnMilisegundos(double segundos, double& baseMs, double& cantidad) {
    const bool cabe = segundos <= 60;
    baseMs = cabe ? segundos * 1000 : 60000;
    cantidad = cabe ? 0 : segundos * 1000 / 60000;
}

BaseDeTiempo baseDeTiempo(double segundos) {
    BaseDeTiempo base;
    establecerBaseDeTiempoEnMilisegundos(segundos, base.ms, base.cantidad);
    return base;
}

std::string claveDeBloque(double puerto, double plc, std::string_view direccion) {
    std::string clave;
    agregarNumero(clave, puerto);
    clave += '.';
    agregarNumero(clave, plc);
    clave += '.';
    clave += direccion;
    return clave;
}

std::string nombreDeScript(std::string_view clave) {
    std::string nombre = "MW_";
    for (const char c : clave)
        nombre += c == '.' ? '_' : c;
    return nombre;
}

} // namespace kv
