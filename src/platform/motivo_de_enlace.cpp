// SPDX-License-Identifier: Apache-2.0
#include "platform/motivo_de_enlace.h"

#include <array>
#include <cerrno>
#include <optional>
#include <system_error>

namespace kv {
namespace {

constexpr std::array kFrases = {
    FraseDe{Motivo::Rechaza, Frase{"rechaza la conexion (nadie atiende ese puerto)",
                                   "it refuses the connection (nobody serves that port)"}},
    FraseDe{Motivo::CortaApenas, Frase{"el otro extremo la corta apenas se establece",
                                       "the other end cuts it as soon as it comes up"}},
    FraseDe{Motivo::NadieContesta,
            Frase{"nadie contesta en esa direccion", "nobody answers at that address"}},
    FraseDe{Motivo::SinPuertoPropio,
            Frase{"no queda un puerto de esta maquina para conectar con esa direccion",
                  "this machine has no port left to connect to that address"}},
    FraseDe{Motivo::RutasAnulan, Frase{"las rutas de esta maquina anulan esa direccion",
                                       "the routes of this machine discard that address"}},
    FraseDe{Motivo::PuertoTomado, Frase{"otro programa ya escucha en ese puerto",
                                        "another program listens at that port already"}},
    FraseDe{Motivo::DireccionAjena, Frase{"esta maquina no tiene esa direccion",
                                          "this machine does not have that address"}},
    FraseDe{Motivo::SinPermisoDePuerto,
            Frase{"no hay permiso para ese puerto", "there is no permission for that port"}},
    FraseDe{Motivo::CortoElOtro,
            Frase{"la corto el otro extremo de golpe", "the other end cut it abruptly"}},
    FraseDe{Motivo::CerroElOtro, Frase{"la cerro el otro extremo", "the other end closed it"}},
    FraseDe{Motivo::NadieConfirma,
            Frase{"nadie confirma lo que se envia", "nobody acknowledges what is sent"}},
    FraseDe{Motivo::SinRuta,
            Frase{"no hay ruta hasta esa direccion", "there is no route to that address"}},
    FraseDe{Motivo::SinRutaARed,
            Frase{"no hay ruta hasta esa red", "there is no route to that network"}},
    FraseDe{Motivo::RedCaida,
            Frase{"la red de esta maquina esta caida", "the network of this machine is down"}},
    FraseDe{Motivo::NoPermitido,
            Frase{"las rutas o el cortafuegos de esta maquina no lo permiten",
                  "the routes or the firewall of this machine do not allow it"}},
    FraseDe{Motivo::SinDescriptores, Frase{"el driver no tiene mas descriptores para conexiones",
                                           "the driver has no descriptors left for connections"}},
    FraseDe{Motivo::SinMemoria, Frase{"el sistema no tiene memoria para conexiones",
                                      "the system has no memory for connections"}},
    FraseDe{Motivo::DireccionNoValida, Frase{"direccion no valida", "the address is not valid"}},
    FraseDe{Motivo::NombreSinPreguntar,
            Frase{"no se pudo preguntar por el nombre %1", "the name %1 could not be asked for"}},
    FraseDe{Motivo::NombreDesconocido,
            Frase{"nadie conoce el nombre %1", "nobody knows the name %1"}},
    FraseDe{Motivo::NombreSinAveriguar,
            Frase{"no se pudo averiguar el nombre %1", "the name %1 could not be looked up"}},
    FraseDe{Motivo::NoLee, Frase{"el otro extremo no lee lo que se le envia",
                                 "the other end does not read what it is sent"}},
    FraseDe{Motivo::NoHayNadie,
            Frase{"al otro extremo no hay nadie", "there is nobody at the other end"}},
    FraseDe{Motivo::EscrituraAbandonada, Frase{"la corto el driver con una escritura abandonada",
                                               "the driver cut it with a write that was given up"}},
    FraseDe{Motivo::LineaQueNoCalla,
            Frase{"la corto el driver porque la linea no callaba",
                  "the driver cut it because the line did not fall silent"}},
};
static_assert(enOrden(kFrases, Motivo::LineaQueNoCalla), "each reason has its words, in its place");

std::optional<Motivo> alConectar(int error) {
    switch (error) {
    case ECONNREFUSED:
        return Motivo::Rechaza;
    case ECONNRESET:
    case EPIPE:
        return Motivo::CortaApenas;
    case ETIMEDOUT:
        return Motivo::NadieContesta;
    case EADDRNOTAVAIL:
        return Motivo::SinPuertoPropio;
    case EINVAL: // what a route says that swallows all
        return Motivo::RutasAnulan;
    default:
        return std::nullopt;
    }
}

std::optional<Motivo> alEscuchar(int error) {
    switch (error) {
    case EADDRINUSE:
        return Motivo::PuertoTomado;
    case EADDRNOTAVAIL:
        return Motivo::DireccionAjena;
    case EACCES:
        return Motivo::SinPermisoDePuerto;
    default:
        return std::nullopt;
    }
}

std::optional<Motivo> establecido(int error) {
    switch (error) {
    case ECONNRESET:
        return Motivo::CortoElOtro;
    case EPIPE:
        return Motivo::CerroElOtro;
    case ETIMEDOUT:
        return Motivo::NadieConfirma;
    default:
        return std::nullopt;
    }
}

std::optional<Motivo> siempre(int error) {
    switch (error) {
    case EHOSTUNREACH:
    case EHOSTDOWN:
        return Motivo::SinRuta;
    case ENETUNREACH:
        return Motivo::SinRutaARed;
    case ENETDOWN:
        return Motivo::RedCaida;
    case EACCES:
    case EPERM:
        return Motivo::NoPermitido;
    case EMFILE:
    case ENFILE:
        return Motivo::SinDescriptores;
    case ENOBUFS:
    case ENOMEM:
        return Motivo::SinMemoria;
    default:
        return std::nullopt;
    }
}

} // namespace

std::string enPalabras(Motivo motivo, std::string_view nombre) {
    return decir(kFrases[static_cast<std::size_t>(motivo)].frase, Idioma::Castellano, {nombre});
}

std::string motivoDeEnlace(int error, FaseDeEnlace fase) {
    auto motivo = fase == FaseDeEnlace::AlConectar   ? alConectar(error)
                  : fase == FaseDeEnlace::AlEscuchar ? alEscuchar(error)
                                                     : establecido(error);
    if (!motivo) motivo = siempre(error);
    return motivo ? enPalabras(*motivo) : std::generic_category().message(error);
}

std::string motivoEn(Idioma idioma, std::string_view texto) {
    return pasarA(idioma, kFrases, texto);
}

} // namespace kv
