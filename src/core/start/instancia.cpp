#include "core/start/instancia.h"

#include "text/texto.h"

namespace kv {

bool SeRepiteProgramaEnRunTime(Procesos& procesos, std::string_view programa) {
    const auto nombres = procesos.nombres();
    if (!nombres) return false;
    int cuantos = 0;
    for (const std::string& nombre : *nombres) {
        if (buscarSinCaja(recortar(nombre), programa) != std::string_view::npos && ++cuantos > 2)
            return true;
    }
    return false;
}

} // namespace kv
