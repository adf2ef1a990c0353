// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/local.h"

#include "ClienteKV2200/salida.h"
#include "config/tabla_de_ajustes.h"
#include "platform/epoll/archivo_de_zocalo.h"
#include "text/json.h"
#include "text/json_leido.h"
#include "text/numeros.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <ostream>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace kv::cliente {
namespace {

constexpr std::size_t kRenglonMaximo = std::size_t{1} << 24;

/// What cannot be gone on with, in words.
struct Falla {
    std::string que;
};

/// The link to the driver, line by line.
class Cable {
  public:
    explicit Cable(const std::string& carpeta)
        : d_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const std::string ruta = carpeta + "/" + std::string(kArchivoDePuertaLocal);
        ArchivoDeZocalo archivo(ruta);
        if (d_ >= 0 && archivo.conectar(d_)) return;
        const int error = errno;
        if (d_ >= 0) close(d_);
        const bool nadie = error == ENOENT || error == ECONNREFUSED;
        throw Falla{nadie ? "en " + carpeta + " no corre un driver que atienda (" + ruta + ")"
                    : error == EACCES ? "sin permiso para usar " + ruta
                                      : ruta + ": " + std::generic_category().message(error)};
    }
    ~Cable() { close(d_); }
    Cable(const Cable&) = delete;
    Cable& operator=(const Cable&) = delete;

    void enviar(std::string renglon) const {
        renglon += '\n';
        for (std::size_t n = 0; n < renglon.size();) {
            const ssize_t k = send(d_, renglon.data() + n, renglon.size() - n, MSG_NOSIGNAL);
            if (k < 0 && errno != EINTR) throw Falla{"el driver cerró la conexión"};
            n += k > 0 ? static_cast<std::size_t>(k) : 0;
        }
    }
    /// The next line; false when none came in time, which below 0 never ends.
    [[nodiscard]] bool renglon(std::string& destino, double segundos) {
        using Reloj = std::chrono::steady_clock;
        const auto fin = Reloj::now() + std::chrono::duration<double>(std::max(segundos, 0.0));
        for (;;) {
            const std::size_t n = recibido_.find('\n', visto_);
            if (n != std::string::npos) {
                destino = recibido_.substr(desde_, n - desde_);
                visto_ = desde_ = n + 1;
                return true;
            }
            visto_ = recibido_.size();
            if (visto_ - desde_ > kRenglonMaximo) throw Falla{"el driver dice algo sin fin"};
            const double quedan = std::chrono::duration<double>(fin - Reloj::now()).count();
            pollfd p{d_, POLLIN, 0};
            const int listo =
                poll(&p, 1, segundos < 0 ? -1 : std::max(0, static_cast<int>(quedan * 1000)));
            if (listo == 0) return false;
            if (listo > 0) recibir();
        }
    }

  private:
    void recibir() {
        recibido_.erase(0, desde_);
        visto_ -= desde_;
        desde_ = 0;
        std::array<char, 65536> trozo{};
        const ssize_t n = recv(d_, trozo.data(), trozo.size(), 0);
        if (n == 0 || (n < 0 && errno != EINTR)) throw Falla{"el driver cerró la conexión"};
        recibido_.append(trozo.data(), n > 0 ? static_cast<std::size_t>(n) : 0);
    }
    int d_;
    std::string recibido_;
    std::size_t desde_ = 0; ///< where the line begins that comes next
    std::size_t visto_ = 0; ///< up to where there is no end of it
};

std::string campo(const Json& j, std::string_view nombre) {
    const Json* m = j.miembro(nombre);
    if (m == nullptr || m->clase() == Json::Clase::Nulo) return {};
    if (m->logico()) return *m->logico() ? "si" : "no";
    std::string texto = m->texto() != nullptr ? *m->texto() : m->comoJson();
    // For a terminal: nothing that steers it.
    std::replace_if(
        texto.begin(), texto.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return texto;
}

std::string conBlanco(const std::string& t) { return t.empty() ? t : " " + t; }

/// Lists in one another are told line by line, each behind the name of its place.
void todosLosCampos(const Json& j, const std::string& margen, std::string& texto) {
    for (std::size_t i = 0; i < j.nombres().size(); ++i) {
        const Json& v = j.elementos()[i];
        texto += margen + j.nombres()[i] + ": " + campo(j, j.nombres()[i]) + "\n";
        if (v.clase() == Json::Clase::Objeto) todosLosCampos(v, margen + "  ", texto);
        for (const Json& e : v.elementos()) {
            if (v.clase() == Json::Clase::Lista) todosLosCampos(e, margen + "  ", texto);
        }
    }
}

std::string variableEnTexto(const Json& j) {
    return campo(j, "direccion") + " " + campo(j, "valor") + " " + campo(j, "estado") +
           (campo(j, "vieja") == "si" ? " vieja" : "");
}

std::string sucesoEnTexto(const Json& j) {
    if (const auto perdidos = campo(j, "perdidos"); !perdidos.empty())
        return "(" + perdidos + " sucesos anteriores ya no están)";
    return campo(j, "numero") + " " + campo(j, "hora") + " " + campo(j, "suceso") +
           conBlanco(campo(j, "conexion")) + conBlanco(campo(j, "bloque")) +
           conBlanco(campo(j, "texto"));
}

std::string enTexto(const Orden& orden, const Json& j) {
    switch (orden.accion) {
    case Accion::Leer:
    case Accion::Sincronizar:
        return variableEnTexto(j);
    case Accion::Vigilar:
        if (const auto saltados = campo(j, "saltados"); !saltados.empty())
            return "(" + saltados + " cambios intermedios no se mostraron)";
        return variableEnTexto(j);
    case Accion::Sucesos:
        return sucesoEnTexto(j);
    case Accion::PorQue:
        return campo(j, "porque");
    case Accion::Conexiones:
        return campo(j, "porque");
    case Accion::Escribir:
        return campo(j, "resultado");
    default: {
        std::string texto;
        todosLosCampos(j, "", texto);
        return texto.substr(0, texto.empty() ? 0 : texto.size() - 1);
    }
    }
}

std::string pedidoDe(const Orden& o) {
    const auto con = [](std::string_view que, const std::string& resto = {}) {
        return "{\"pedido\":\"" + std::string(que) + "\"" + resto + "}";
    };
    const auto direccion = [&o] { return ",\"direccion\":" + enJson(o.direcciones.front()); };
    std::string lista;
    for (const std::string& d : o.direcciones)
        lista += (lista.empty() ? "" : ",") + enJson(d);
    switch (o.accion) {
    case Accion::Leer:
        return con("variables", ",\"direcciones\":[" + lista + "]");
    case Accion::Sincronizar:
        return con("variables");
    case Accion::Escribir:
        return con("escribir",
                   direccion() + ",\"valor\":" + textoDeNumero(numeroDeTexto(o.valor).value_or(0)));
    case Accion::Forzar:
        return con("forzar", ",\"nivel\":" + textoDeNumero(numeroDeTexto(o.nivel).value_or(0)) +
                                 ",\"veces\":" + textoDeNumero(numeroDeTexto(o.veces).value_or(0)));
    case Accion::Vigilar:
        return con("vigilar", ",\"valores\":true");
    case Accion::Estado:
        return con("estado");
    case Accion::PorQue:
        return con("porque", direccion());
    case Accion::Sucesos:
        if (o.seguir) return con("vigilar", ",\"sucesos\":true");
        return con("sucesos", o.desde.empty() ? "" : ",\"desde\":" + enJson(o.desde));
    case Accion::Bloques:
        return con("bloques");
    case Accion::Conexiones:
        return con("conexiones");
    case Accion::Contadores:
        return con("contadores");
    }
    return {};
}

/// Whether a line is the last of an answer: of some there is only one.
bool esLaUltima(const Orden& o, const Json& j) {
    return campo(j, "fin") == "si" || o.accion == Accion::PorQue || o.accion == Accion::Forzar;
}

bool sigueSinFin(const Orden& o) { return o.accion == Accion::Vigilar || o.seguir; }

int conversar(const Orden& o, std::ostream& salida) {
    using Reloj = std::chrono::steady_clock;
    Cable cable(o.local);
    cable.enviar(pedidoDe(o));
    const auto fin = Reloj::now() + std::chrono::duration<double>(o.duranteSegundos);
    std::string renglon;
    for (bool primero = true;; primero = false) {
        const bool sinFin = sigueSinFin(o);
        const double quedan =
            o.duranteSegundos > 0
                ? std::max(0.0, std::chrono::duration<double>(fin - Reloj::now()).count())
                : -1;
        if (!cable.renglon(renglon, sinFin ? quedan : o.esperaSegundos)) {
            if (sinFin) return kHecho;
            throw Falla{primero ? "el driver no contesta" : "la respuesta no termina de llegar"};
        }
        std::string mala;
        const auto j = leerJson(renglon, mala);
        if (!j) throw Falla{"el driver dice algo que no es JSON: " + mala};
        if (const auto error = campo(*j, "error"); !error.empty()) throw Falla{error};
        const bool ultima = esLaUltima(o, *j);
        const bool acuse = j->miembro("aceptada") != nullptr || (sinFin && primero) ||
                           j->miembro("cuantos") != nullptr;
        if (!acuse) salida << (o.json ? renglon : enTexto(o, *j)) << '\n';
        salida.flush();
        if (!ultima || sinFin) continue;
        return o.accion == Accion::Escribir && campo(*j, "confirmada") != "si" ? kNoHecho : kHecho;
    }
}

} // namespace

int hacerLocal(const Orden& orden, std::ostream& salida, std::ostream& errores) {
    try {
        return conversar(orden, salida);
    } catch (const Falla& f) {
        errores << lineaDeError(f.que, orden.json) << '\n';
        return kNoHecho;
    }
}

} // namespace kv::cliente
