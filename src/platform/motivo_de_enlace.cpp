// SPDX-License-Identifier: Apache-2.0
#include "platform/motivo_de_enlace.h"

#include <cerrno>
#include <system_error>

namespace kv {
namespace {

const char* alConectar(int error) {
    switch (error) {
    case ECONNREFUSED:
        return "rechaza la conexion (nadie atiende ese puerto)";
    case ECONNRESET:
    case EPIPE:
        return "el otro extremo la corta apenas se establece";
    case ETIMEDOUT:
        return "nadie contesta en esa direccion";
    case EADDRNOTAVAIL:
        return "no queda un puerto de esta maquina para conectar con esa direccion";
    case EINVAL: // what a route says that swallows all
        return "las rutas de esta maquina anulan esa direccion";
    default:
        return nullptr;
    }
}

const char* alEscuchar(int error) {
    switch (error) {
    case EADDRINUSE:
        return "otro programa ya escucha en ese puerto";
    case EADDRNOTAVAIL:
        return "esta maquina no tiene esa direccion";
    case EACCES:
        return "no hay permiso para ese puerto";
    default:
        return nullptr;
    }
}

const char* establecido(int error) {
    switch (error) {
    case ECONNRESET:
        return "la corto el otro extremo de golpe";
    case EPIPE:
        return "la cerro el otro extremo";
    case ETIMEDOUT:
        return "nadie confirma lo que se envia";
    default:
        return nullptr;
    }
}

const char* siempre(int error) {
    switch (error) {
    case EHOSTUNREACH:
    case EHOSTDOWN:
        return "no hay ruta hasta esa direccion";
    case ENETUNREACH:
        return "no hay ruta hasta esa red";
    case ENETDOWN:
        return "la red de esta maquina esta caida";
    case EACCES:
    case EPERM:
        return "las rutas o el cortafuegos de esta maquina no lo permiten";
    case EMFILE:
    case ENFILE:
        return "el driver no tiene mas descriptores para conexiones";
    case ENOBUFS:
    case ENOMEM:
        return "el sistema no tiene memoria para conexiones";
    default:
        return nullptr;
    }
}

} // namespace

std::string motivoDeEnlace(int error, FaseDeEnlace fase) {
    const char* propio = fase == FaseDeEnlace::AlConectar   ? alConectar(error)
                         : fase == FaseDeEnlace::AlEscuchar ? alEscuchar(error)
                                                            : establecido(error);
    if (propio == nullptr) propio = siempre(error);
    return propio != nullptr ? propio : std::generic_category().message(error);
}

} // namespace kv
