// SPDX-License-Identifier: Apache-2.0
// What a reader of the local door may ask for.
#include "door/puerta_local.h"

#include "door/usuarios.h"
#include "events/fin_de_escritura.h"
#include "events/nombres.h"
#include "events/rechazo.h"
#include "plant/limites.h"
#include "plant/ordenantes.h"
#include "text/numeros.h"
#include "text/texto.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::size_t kLargoDeId = 64;

/// A member that is a text; empty where it is missing or no text.
std::string_view textoEn(const Json& p, std::string_view nombre) {
    const Json* j = p.miembro(nombre);
    return j != nullptr && j->texto() != nullptr ? std::string_view(*j->texto())
                                                 : std::string_view();
}

std::optional<double> numeroEn(const Json& p, std::string_view nombre) {
    const Json* j = p.miembro(nombre);
    return j == nullptr ? std::nullopt : j->numero();
}

ObjetoJson respuesta(std::string& salida, const std::string& id) {
    ObjetoJson o(salida);
    if (!id.empty()) o.crudo("id", id);
    return o;
}

void cerrarRenglon(ObjetoJson& o, std::string& salida) {
    o.fin();
    salida += '\n';
}

/// How the script's last run ended: its label says so by its colour.
std::string_view comoSalio(Color color) {
    if (color == Color::Ninguno) return "sin correr";
    return color == Color::Verde ? "OK" : "con error";
}

/// What an event says of a forced read that leads nowhere; empty for all others.
std::string_view porQueNoSeFuerza(Que que) {
    switch (que) {
    case Que::SinPuertoNiPlc:
    case Que::AltaSinPuerto:
        return "no existe ese puerto o PLC";
    case Que::ForzarSinTrama:
    case Que::AltaFueraDeTrama:
        return "direccion fuera de trama";
    case Que::ForzarSinConexion:
        return "sin conexion";
    case Que::ForzarEnDescanso:
        return "el bloque descansa: la estacion no contesta";
    case Que::AltaSinLugar:
        return "la estacion no admite mas bloques a pedido";
    default:
        return {};
    }
}

} // namespace

void PuertaLocal::fallar(Lector& l, const std::string& id, std::string_view porque) {
    ObjetoJson o = respuesta(l.salida, id);
    o.texto("error", porque);
    cerrarRenglon(o, l.salida);
}

void PuertaLocal::terminar(std::string& salida, const std::string& id, std::uint64_t cuantos) {
    ObjetoJson o = respuesta(salida, id);
    o.logico("fin", true).numero("cuantos", static_cast<double>(cuantos));
    cerrarRenglon(o, salida);
}

void PuertaLocal::pedir(Lector& l, std::string_view renglon) {
    if (recortar(renglon).empty()) return;
    std::string falla;
    const auto pedido = leerJson(renglon, falla);
    if (!pedido) return fallar(l, {}, "no es JSON: " + falla);
    if (pedido->clase() != Json::Clase::Objeto) return fallar(l, {}, "un pedido es un objeto");
    const Json* const suId = pedido->miembro("id");
    const std::string id = suId != nullptr ? suId->comoJson() : std::string();
    if (id.size() > kLargoDeId || (suId != nullptr && id.empty()))
        return fallar(l, {}, "id: un texto corto o un numero");
    struct Clase {
        std::string_view nombre;
        Manejador manejador;
    };
    static constexpr std::array kClases = {Clase{"estado", &PuertaLocal::estado},
                                           Clase{"variables", &PuertaLocal::variables},
                                           Clase{"bloques", &PuertaLocal::bloques},
                                           Clase{"conexiones", &PuertaLocal::conexiones},
                                           Clase{"contadores", &PuertaLocal::contadores},
                                           Clase{"sucesos", &PuertaLocal::sucesosDesde},
                                           Clase{"porque", &PuertaLocal::porque},
                                           Clase{"vigilar", &PuertaLocal::vigilar},
                                           Clase{"escribir", &PuertaLocal::escribir},
                                           Clase{"forzar", &PuertaLocal::forzar}};
    const std::string_view que = textoEn(*pedido, "pedido");
    const auto* const c = std::find_if(kClases.begin(), kClases.end(),
                                       [que](const Clase& x) { return x.nombre == que; });
    if (c != kClases.end()) return (this->*c->manejador)(l, *pedido, id);
    std::string cuales;
    for (const Clase& x : kClases)
        cuales += (cuales.empty() ? "" : ", ") + std::string(x.nombre);
    fallar(l, id, "pedido: uno de " + cuales);
}

void PuertaLocal::encolar(Lector& l, const std::string& id, Trabajo trabajo) {
    if (l.trabajos.size() >= kTrabajos) return fallar(l, id, "demasiados pedidos a la vez");
    l.trabajos.push_back(std::move(trabajo));
}

/// A line for each of `cuantos` records of which `uno` writes one, and in the end how many they
/// were.
template <class F>
void PuertaLocal::encolarTodos(Lector& l, const std::string& id, std::size_t cuantos, F uno) {
    encolar(l, id,
            [id, cuantos, uno, i = std::size_t{0},
             dichos = std::uint64_t{0}](std::string& salida, std::size_t& pasos) mutable {
                for (; i < cuantos && pasos > 0 && salida.size() < (std::size_t{64} << 10); ++i) {
                    --pasos;
                    const std::size_t antes = salida.size();
                    ObjetoJson o = respuesta(salida, id);
                    if (uno(static_cast<Indice>(i), o)) {
                        cerrarRenglon(o, salida);
                        ++dichos;
                    } else {
                        salida.resize(antes);
                    }
                }
                if (i < cuantos) return false;
                terminar(salida, id, dichos);
                return true;
            });
}

void PuertaLocal::estado(Lector& l, const Json& /*p*/, const std::string& id) {
    struct Suma {
        Indice i = 0;
        double ok = 0, bad = 0, viejas = 0, apagadas = 0;
    };
    encolar(l, id, [this, id, s = Suma{}](std::string& salida, std::size_t& pasos) mutable {
        const auto& bloques = p_.tablas.bloques;
        for (; s.i < bloques.limiteSuperior() && pasos > 0; ++s.i) {
            if (s.i % 8 == 0) --pasos;
            if (bloques[s.i].retirado) continue;
            const Edad e = p_.porQue.edad(s.i);
            ++(!bloques[s.i].activo ? s.apagadas : !e.ok ? s.bad : e.vieja ? s.viejas : s.ok);
        }
        if (s.i < bloques.limiteSuperior()) return false;
        double conexiones = 0, conectadas = 0, calladas = 0;
        for (Indice k = 0; k < p_.tablas.conexiones.limiteSuperior(); ++k) {
            const ConexionIP& c = p_.tablas.conexiones[k];
            if (c.retirada) continue;
            ++conexiones;
            conectadas += p_.turnos.conectada(k) ? 1 : 0;
            for (const Indice e : c.estacionesEnUso())
                calladas += p_.porQue.callada(c.estaciones[e]) ? 1 : 0;
        }
        ObjetoJson o = respuesta(salida, id);
        o.texto("hora", enIso(p_.bucle.reloj().ahora()))
            .texto("desde", enIso(desde_))
            .texto("proyecto", p_.vista.lblProyecto.texto())
            .numero("ok", s.ok)
            .numero("bad", s.bad)
            .numero("viejas", s.viejas)
            .numero("apagadas", s.apagadas)
            .numero("conexiones", conexiones)
            .numero("conectadas", conectadas)
            .numero("estacionesCalladas", calladas)
            .texto("cliente", p_.vista.servidor.lblEstado.texto())
            .texto("guion", comoSalio(p_.vista.lblEstadoScript.color()))
            .numero("escriturasEnEspera", static_cast<double>(p_.ejecucion.enEspera()))
            .numero("primerSuceso", static_cast<double>(p_.sucesos.primero()))
            .numero("proximoSuceso", static_cast<double>(p_.sucesos.siguiente()))
            .numero("lectores", static_cast<double>(lectores_.size()));
        cerrarRenglon(o, salida);
        terminar(salida, id, 1);
        return true;
    });
}

std::optional<PuertaLocal::Lugar> PuertaLocal::lugarDe(std::string_view direccion) const {
    DireccionPartida d;
    if (const std::int64_t fila = p_.vista.lstViewVariables.buscar(direccion); fila >= 0) {
        const auto bloque = p_.vista.lstViewVariables.etiqueta(static_cast<FilaDeLista>(fila));
        const auto i = static_cast<Indice>(bloque);
        if (p_.tablas.bloques.vive(static_cast<double>(bloque)))
            return p_.tablas.bloques[i].clave == direccion
                       ? Lugar{i, -1}
                       : Lugar{i, bitDeTexto(direccion.substr(direccion.rfind('.') + 1))};
    }
    // As a write finds it: registers are numbers, and any bit of one that is read is known.
    if (!partirDireccion(direccion, d) || d.bit == kNoEsBit) return std::nullopt;
    const auto lugar = p_.tablas.buscarEstacion(d.puerto, d.plc);
    if (lugar.conexion == kNinguno) return std::nullopt;
    const Indice i = p_.tablas.buscarPorRegistro(lugar.conexion, d.plc, d.registro);
    return i == kNinguno ? std::nullopt : std::optional(Lugar{i, d.bit});
}

/// The variables that a request names, if it names any. False: one of them does not exist.
bool PuertaLocal::elegir(Lector& l, const Json& p, const std::string& id,
                         std::vector<Lugar>& lugares) const {
    const Json* const cuales = p.miembro("direcciones");
    if (cuales == nullptr) return true;
    for (const Json& j : cuales->elementos()) {
        const auto lugar = j.texto() != nullptr ? lugarDe(*j.texto()) : std::nullopt;
        if (!lugar) {
            fallar(l, id, "no hay una variable " + j.comoJson());
            return false;
        }
        lugares.push_back(*lugar);
    }
    if (lugares.empty()) fallar(l, id, "direcciones: una lista de textos");
    return !lugares.empty();
}

void PuertaLocal::variables(Lector& l, const Json& p, const std::string& id) {
    std::vector<Lugar> lugares;
    if (!elegir(l, p, id, lugares)) return;
    if (lugares.empty())
        return encolarTodos(l, id, p_.tablas.bloques.limiteSuperior(),
                            [this](Indice i, ObjetoJson& o) {
                                if (p_.tablas.bloques[i].retirado) return false;
                                formas_.variable(i, -1, o);
                                return true;
                            });
    const std::size_t cuantos = lugares.size();
    encolarTodos(l, id, cuantos, [this, lugares = std::move(lugares)](Indice i, ObjetoJson& o) {
        formas_.variable(lugares[i].bloque, lugares[i].bit, o);
        return true;
    });
}

void PuertaLocal::bloques(Lector& l, const Json& /*p*/, const std::string& id) {
    encolarTodos(l, id, p_.tablas.bloques.limiteSuperior(), [this](Indice i, ObjetoJson& o) {
        if (p_.tablas.bloques[i].retirado) return false;
        formas_.bloque(i, o);
        return true;
    });
}

void PuertaLocal::conexiones(Lector& l, const Json& /*p*/, const std::string& id) {
    encolarTodos(l, id, p_.tablas.conexiones.limiteSuperior(), [this](Indice k, ObjetoJson& o) {
        if (p_.tablas.conexiones[k].retirada) return false;
        formas_.conexion(k, o);
        return true;
    });
}

void PuertaLocal::contadores(Lector& l, const Json& /*p*/, const std::string& id) {
    encolarTodos(l, id, p_.tablas.conexiones.limiteSuperior(), [this](Indice k, ObjetoJson& o) {
        if (p_.tablas.conexiones[k].retirada) return false;
        formas_.cuentas(k, o);
        return true;
    });
}

Indice PuertaLocal::conexionDe(std::string_view direccion) const {
    const std::size_t dos = direccion.rfind(':');
    if (dos == std::string_view::npos) return kNinguno;
    return p_.tablas.buscarConexion(std::string(direccion.substr(0, dos)),
                                    std::string(direccion.substr(dos + 1)));
}

/// From a time, or from an event's number, or all that there are.
void PuertaLocal::sucesosDesde(Lector& l, const Json& p, const std::string& id) {
    const Sucesos& s = p_.sucesos;
    std::uint64_t n = s.primero();
    if (const auto numero = numeroEn(p, "desde")) {
        n = static_cast<std::uint64_t>(std::clamp(*numero, 0.0, 9e15));
    } else if (const auto hora = textoEn(p, "desde"); !hora.empty()) {
        const auto f = deIso(hora, p_.bucle.reloj().ahora());
        if (!f) return fallar(l, id, "desde: un numero, AAAA-MM-DDThh:mm[:ss] o hh:mm[:ss]");
        std::uint64_t hasta = s.siguiente();
        const std::int64_t busca = empaquetar(*f);
        while (n < hasta) {
            const std::uint64_t medio = n + (hasta - n) / 2;
            s[medio].instante < busca ? n = medio + 1 : hasta = medio;
        }
    }
    const std::string_view enConexion = textoEn(p, "conexion");
    const Indice conexion = conexionDe(enConexion);
    if (!enConexion.empty() && conexion == kNinguno) return fallar(l, id, "no hay esa conexion");
    encolar(l, id,
            [this, id, n, conexion, fin = s.siguiente(),
             dichos = std::uint64_t{0}](std::string& salida, std::size_t& pasos) mutable {
                const Sucesos& todos = p_.sucesos;
                if (n < todos.primero()) {
                    ObjetoJson o = respuesta(salida, id);
                    o.numero("perdidos", static_cast<double>(todos.primero() - n));
                    cerrarRenglon(o, salida);
                    n = todos.primero();
                }
                for (; n < fin && pasos > 0 && salida.size() < (std::size_t{64} << 10); ++n) {
                    --pasos;
                    if (conexion != kNinguno && todos[n].conexion != conexion) continue;
                    ObjetoJson o = respuesta(salida, id);
                    formas_.suceso(n, o);
                    cerrarRenglon(o, salida);
                    ++dichos;
                }
                if (n < fin) return false;
                terminar(salida, id, dichos);
                return true;
            });
}

void PuertaLocal::porque(Lector& l, const Json& p, const std::string& id) {
    std::string texto;
    const std::string_view direccion = textoEn(p, "direccion");
    const auto lugar = direccion.empty() ? std::nullopt : lugarDe(direccion);
    if (lugar) {
        ObjetoJson o = respuesta(l.salida, id);
        o.texto("porque", p_.porQue.porQueVariable(lugar->bloque));
        formas_.edad(lugar->bloque, o);
        return cerrarRenglon(o, l.salida);
    }
    const Indice conexion = conexionDe(direccion);
    const auto partes = partir(direccion, '.');
    if (conexion != kNinguno) {
        texto = p_.porQue.porQueConexion(conexion);
    } else if (partes.size() == 2) {
        const auto puerto = numeroDeTexto(partes[0]);
        const auto plc = numeroDeTexto(partes[1]);
        const auto e =
            puerto && plc ? p_.tablas.buscarEstacion(*puerto, *plc) : Tablas::LugarDeEstacion{};
        if (e.conexion != kNinguno) texto = p_.porQue.porQueEstacion(e.conexion, e.estacion);
    }
    if (texto.empty())
        return fallar(l, id,
                      "direccion: una variable (1.1.10), una estacion (1.1) o una conexion "
                      "(10.0.0.1:502) que exista");
    ObjetoJson o = respuesta(l.salida, id);
    o.texto("porque", texto);
    cerrarRenglon(o, l.salida);
}

void PuertaLocal::vigilar(Lector& l, const Json& p, const std::string& id) {
    const auto pide = [&p](std::string_view que) {
        const Json* const cual = p.miembro(que);
        return cual != nullptr && cual->logico().value_or(false);
    };
    std::vector<Lugar> lugares;
    std::set<Que> clases;
    if (!elegir(l, p, id, lugares)) return;
    if (const Json* const cuales = p.miembro("clases")) {
        for (const Json& j : cuales->elementos()) {
            const auto que = j.texto() != nullptr ? queDeNombre(*j.texto()) : std::nullopt;
            if (!que) return fallar(l, id, "clases: no hay sucesos " + j.comoJson());
            clases.insert(*que);
        }
    }
    l.sigueValores = pide("valores");
    l.sigueSucesos = pide("sucesos");
    l.todos = lugares.empty();
    l.elegidos.clear();
    l.claves.clear();
    l.conocidos = p_.tablas.bloques.limiteSuperior();
    l.cambiados = {};
    l.saltados = 0;
    l.clases = std::move(clases);
    l.visto = p_.sucesos.siguiente();
    // What they are now comes first.
    for (const Lugar& lugar : lugares) {
        l.elegidos[lugar.bloque].insert(lugar.bit);
        l.claves[p_.tablas.bloques[lugar.bloque].clave].insert(lugar.bit);
    }
    for (Indice i = 0; l.sigueValores && i < p_.tablas.bloques.limiteSuperior(); ++i) {
        if (!p_.tablas.bloques[i].retirado && (l.todos || l.elegidos.contains(i)))
            l.cambiados.poner(i, true);
    }
    escucharLoNecesario();
    ObjetoJson o = respuesta(l.salida, id);
    o.logico("valores", l.sigueValores).logico("sucesos", l.sigueSucesos);
    cerrarRenglon(o, l.salida);
}

/// A user who may not order gets a refusal.
bool PuertaLocal::puedeOrdenar(Lector& l, const std::string& id) const {
    const std::string lista =
        p_.ajustes.leerIni(p_.ajustes.archivoDeAjustes(), kPuertaLocalEscriben.seccion,
                           kPuertaLocalEscriben.clave, "");
    if (estaEnLista(lista, l.usuario, l.nombre)) return true;
    fallar(l, id,
           "el usuario " + l.nombre + " no esta en " + std::string(kPuertaLocalEscriben.clave));
    return false;
}

void PuertaLocal::contarResultado(Lector& l, const std::string& id, std::int16_t fin) {
    ObjetoJson o = respuesta(l.salida, id);
    o.logico("fin", true)
        .logico("confirmada", static_cast<FinDeEscritura>(fin) == FinDeEscritura::Confirmada)
        .texto("resultado", palabras(static_cast<FinDeEscritura>(fin)));
    cerrarRenglon(o, l.salida);
}

void PuertaLocal::escribir(Lector& l, const Json& p, const std::string& id) {
    const std::string direccion(textoEn(p, "direccion"));
    const auto valor = numeroEn(p, "valor");
    if (direccion.empty() || direccion.size() > limite::kDireccionEnMensaje || !valor)
        return fallar(l, id, "escribir: direccion es un texto y valor un numero");
    const std::string origen = origenDeUsuario(l.nombre);
    if (!puedeOrdenar(l, id)) {
        p_.solicitudes.rechazar({direccion, enPalabras(Rechazo::UsuarioSinPermiso), origen},
                                *valor);
        return;
    }
    if (l.escrituras.size() >= kEscrituras) return fallar(l, id, "demasiadas escrituras a la vez");
    // It may end before its number is known: asking for it lets events run.
    ordenaEscribir_ = true;
    terminadas_.clear();
    rechazo_.clear();
    escucharLoNecesario();
    const double escritura = p_.solicitudes.escribirDireccion(direccion, *valor, origen);
    ordenaEscribir_ = false;
    if (escritura < 0) return fallar(l, id, "no se acepta: " + rechazo_);
    const auto i = static_cast<Indice>(escritura);
    const auto ya = std::find_if(terminadas_.begin(), terminadas_.end(),
                                 [i](const auto& t) { return t.first == i; });
    if (ya != terminadas_.end()) return contarResultado(l, id, ya->second);
    l.escrituras.push_back({i, id});
    ObjetoJson o = respuesta(l.salida, id);
    o.logico("aceptada", true);
    cerrarRenglon(o, l.salida);
}

void PuertaLocal::forzar(Lector& l, const Json& p, const std::string& id) {
    const std::string direccion(textoEn(p, "direccion"));
    const auto nivel = numeroEn(p, "nivel");
    const auto veces = numeroEn(p, "veces");
    const auto esEntero = [](const std::optional<double>& n) {
        return n && enteroCorto(*n) && *enteroCorto(*n) == *n;
    };
    const bool porNivel = esEntero(nivel) && esEntero(veces) && *veces >= -1;
    if (direccion.empty() == !porNivel || direccion.size() > limite::kDireccionEnMensaje)
        return fallar(l, id,
                      "forzar: direccion, o nivel y veces, que son numeros enteros; veces 0 activa "
                      "y -1 desactiva");
    const std::string que =
        porNivel ? "nivel " + textoDeNumero(*nivel) + ", veces: " + textoDeNumero(*veces)
                 : direccion;
    const std::string quien = origenDeUsuario(l.nombre);
    if (!puedeOrdenar(l, id))
        return log_.escribir("Puerta local", quien + ": no se hace forzar " + que);
    p_.log.escribirLog("PuertaLocal", porNivel ? "Forzar nivel" : "Forzar lectura", que, quien);
    const std::string ordenante = nombreDe(Ordenante::Usuario, l.nombre);
    std::string_view porque;
    if (!porNivel) {
        porque = porQueNoSeFuerza(p_.forzado.forzarPoleo(direccion, ordenante));
    } else if (!p_.forzado.forzarBloque_porNivel_NVeces(*enteroCorto(*nivel), *enteroCorto(*veces),
                                                        ordenante)) {
        // Of the blocks of a level some may not be asked for, which their own lines say.
        porque = "ningun bloque tiene ese nivel";
    }
    if (!porque.empty()) return fallar(l, id, "no se hace: " + std::string(porque));
    ObjetoJson o = respuesta(l.salida, id);
    o.logico("aceptada", true);
    cerrarRenglon(o, l.salida);
}

} // namespace kv
