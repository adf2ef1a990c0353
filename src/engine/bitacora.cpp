// SPDX-License-Identifier: Apache-2.0
#include "engine/bitacora.h"

#include "events/fin_de_escritura.h"
#include "events/rechazo.h"
#include "events/redaccion.h"
#include "plant/ordenantes.h"
#include "text/fecha.h"
#include "text/numeros.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::string_view kDriver = "DRIVER";
constexpr std::int64_t kEntreMiradasMs = 1000;
constexpr unsigned kBitsDeLugar = 56;

/// Places of refused writes, which have no connection: whose they are.
constexpr std::uint64_t kDelGuion = std::uint64_t{1} << 40U;
constexpr std::uint64_t kDeUnaPuerta = kDelGuion + 1;
constexpr std::uint64_t kDeOtros = kDelGuion + 2;

/// Entries that are written one by one before they are counted: there and back for what flaps.
constexpr std::uint32_t kSueltasDeIdaYVuelta = 2;
constexpr std::uint32_t kSueltas = 10;

std::string cuanto(std::int64_t ms) {
    const std::int64_t segundos = ms / 1000;
    return textoDeNumero(static_cast<double>(segundos)) + " s";
}

} // namespace

Bitacora::Bitacora(Sucesos& sucesos, const Tablas& tablas, const Reloj& reloj, ArchivoLog& log)
    : sucesos_(sucesos), tablas_(tablas), reloj_(reloj), log_(log) {
    sucesos_.avisarA(this,
                     {Que::EnlaceArriba, Que::EnlaceAbajo, Que::EnlaceNoLevanta, Que::EstacionMuda,
                      Que::EstacionContesta, Que::BloqueConmutado, Que::EscrituraRechazada,
                      Que::EscrituraTerminada, Que::GuionDetenido, Que::SinPuertoNiPlc,
                      Que::GuionSigue, Que::ClienteEntra, Que::ClienteSale});
}

void Bitacora::alSuceder(const Suceso& s, std::string_view texto) {
    switch (s.que) {
    case Que::EnlaceArriba:
    case Que::EnlaceAbajo:
    case Que::EnlaceNoLevanta:
        return enlace(s);
    case Que::EstacionMuda:
    case Que::EstacionContesta:
        return estacion(s);
    case Que::BloqueConmutado:
        return bloque(s);
    case Que::EscrituraRechazada:
        return rechazo(s, texto);
    case Que::EscrituraTerminada:
        return abandono(s);
    case Que::SinPuertoNiPlc:
        return sinDestino(s, texto);
    case Que::GuionDetenido:
    case Que::GuionSigue:
        return guion(s, texto);
    case Que::ClienteEntra:
    case Que::ClienteSale:
        return cliente(s, texto);
    default:
        return;
    }
}

void Bitacora::enlace(const Suceso& s) {
    const ConexionIP& c = tablas_.conexiones[s.conexion];
    const std::string donde = direccionDe(c);
    std::string que = donde + ": conectada";
    EntradaDeLog e{kDriver, "Enlace", {}};
    e.conexion = donde;
    if (c.retirada) {
        que = donde + ": se cierra, ya no esta configurada";
        e.mensaje = que;
        e.novedad = Novedad::EnlaceRetirado;
        return log_.escribir(e);
    }
    e.novedad = Novedad::EnlaceArriba;
    if (s.que != Que::EnlaceArriba) {
        e.motivo = c.motivo;
        e.novedad = s.que == Que::EnlaceAbajo ? Novedad::EnlaceAbajo : Novedad::EnlaceNoLevanta;
        que = donde + (s.que == Que::EnlaceAbajo ? ": se perdio" : ": no se puede conectar");
        if (!c.motivo.empty()) que += ", " + c.motivo;
    }
    e.mensaje = que;
    anotar(Clase::Enlace, s.conexion, e);
}

void Bitacora::estacion(const Suceso& s) {
    const bool muda = s.que == Que::EstacionMuda;
    if (muda && s.detalle != 0) return;
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    const std::string nombre = nombreDeEstacion(tablas_, s.bloque);
    const std::string donde = direccionDe(tablas_.conexiones[b.idConexion]);
    EntradaDeLog e{kDriver, muda ? "Estacion sin respuesta" : "Estacion contesta", nombre};
    e.novedad = muda ? Novedad::EstacionMuda : Novedad::EstacionContesta;
    e.conexion = donde;
    e.estacion = nombre;
    e.bloque = b.clave;
    if (muda) e.motivo = "sin respuesta";
    const auto lugar = std::uint64_t{b.idConexion} << 24U | b.idEstacion;
    anotar(Clase::Estacion, lugar, e);
}

void Bitacora::bloque(const Suceso& s) {
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    const std::string& quien = tablas_.ordenantes[b.ordenante];
    const std::string que =
        b.clave + ", por orden de" + (quien.starts_with("el ") ? quien.substr(1) : " " + quien);
    const std::string donde = direccionDe(tablas_.conexiones[b.idConexion]);
    const std::string nombre = nombreDeEstacion(tablas_, s.bloque);
    const bool encendido = s.detalle != 0;
    EntradaDeLog e{kDriver, encendido ? "Bloque encendido" : "Bloque apagado", que};
    e.novedad = encendido ? Novedad::BloqueEncendido : Novedad::BloqueApagado;
    e.conexion = donde;
    e.estacion = nombre;
    e.bloque = b.clave;
    e.motivo = quien;
    anotar(Clase::Bloque, b.ordenante, e);
}

void Bitacora::rechazo(const Suceso& s, std::string_view texto) {
    const TextoDeRechazo r = TextoDeRechazo::partir(texto);
    const auto clase = static_cast<ClaseDeRechazo>(s.detalle);
    const bool delPedido = esDelPedido(clase);
    const std::string valor = textoDeNumero(s.numero);
    const std::string direccion(r.direccion);
    const std::string procedimiento =
        delPedido ? "escritura de " + direccion + " valor: " + valor + " - Scan: 3"
                  : "Escritura rechazada";
    const std::string que =
        delPedido ? std::to_string(s.detalle)
                  : direccion + " = " + valor + ", pedida por " + std::string(r.origen);
    EntradaDeLog e{kDriver, procedimiento, que, r.motivo};
    e.novedad = clase == ClaseDeRechazo::DeUnaPuerta ? Novedad::EscrituraNoAdmitida
                                                     : Novedad::EscrituraRechazada;
    const std::string donde =
        s.conexion == kNinguno ? std::string() : direccionDe(tablas_.conexiones[s.conexion]);
    e.conexion = donde;
    e.bloque = r.direccion;
    e.motivo = r.motivo;
    // A script that asks in vain without end hides nobody else's.
    const std::uint64_t quien = clase == ClaseDeRechazo::DeUnaPuerta ? kDeUnaPuerta
                                : esDelGuion(r.origen)               ? kDelGuion
                                                                     : kDeOtros;
    anotar(Clase::Escritura, quien, e);
}

void Bitacora::abandono(const Suceso& s) {
    const auto fin = static_cast<FinDeEscritura>(s.detalle);
    if (fin == FinDeEscritura::Confirmada) return;
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    const std::string direccion = direccionEscrita(tablas_, s);
    const std::string que = direccion + " = " + textoDeNumero(s.numero) + ", pedida por " +
                            tablas_.escrituras[s.escritura].origen;
    const std::string donde = direccionDe(tablas_.conexiones[b.idConexion]);
    const std::string nombre = nombreDeEstacion(tablas_, s.bloque);
    EntradaDeLog e{kDriver, "Escritura sin confirmar", que, palabras(fin)};
    e.novedad = Novedad::EscrituraAbandonada;
    e.conexion = donde;
    e.estacion = nombre;
    e.bloque = direccion;
    e.motivo = palabras(fin);
    anotar(Clase::Escritura, b.idConexion, e);
}

void Bitacora::sinDestino(const Suceso& s, std::string_view direccion) {
    const std::string que = formatoDeSello(desempaquetar(s.instante)) +
                            " NO EXISTE PUERTO O PLC PARA: " + std::string(direccion);
    anotar(Clase::Forzado, 0, {kDriver, "Error al forzar un poleo", que});
}

void Bitacora::guion(const Suceso& s, std::string_view texto) {
    const bool detenido = s.que == Que::GuionDetenido;
    // What went wrong stands before it, once for each content of the file.
    EntradaDeLog e{kDriver, detenido ? "Guion detenido" : "Guion corre de nuevo",
                   detenido ? s.detalle != 0 ? "agoto tiempo, memoria o pasos: descansa"
                                             : "con una falla"
                            : "sin fallas"};
    if (!detenido && s.detalle != 0) {
        e.procedimiento = "Guion";
        e.mensaje = "ya no hay archivo del guion";
    }
    e.novedad = detenido ? Novedad::GuionDetenido : Novedad::GuionSigue;
    if (detenido) e.motivo = texto;
    anotar(Clase::Guion, 0, e);
}

void Bitacora::cliente(const Suceso& s, std::string_view texto) {
    const bool entra = s.que == Que::ClienteEntra;
    EntradaDeLog e{kDriver, entra ? "Cliente entra" : "Cliente sale", texto};
    e.novedad = entra ? Novedad::ClienteEntra : Novedad::ClienteSale;
    e.conexion = texto;
    if (!entra && s.detalle != 0) e.descripcion = e.motivo = "no contesta";
    anotar(Clase::Cliente, 0, e);
}

void Bitacora::anotar(Clase clase, std::uint64_t cual, const EntradaDeLog& entrada) {
    const std::int64_t ahora = reloj_.monotonicoMs();
    const auto clave = std::uint64_t{static_cast<std::uint8_t>(clase)} << kBitsDeLugar | cual;
    const auto [lugar, nueva] = ventanas_.try_emplace(clave);
    Ventana& v = lugar->second;
    if (nueva) v.desdeMs = ahora;
    v.ultimoMs = ahora;
    const bool vaYViene =
        clase != Clase::Bloque && clase != Clase::Escritura && clase != Clase::Forzado;
    if (v.sueltas < (vaYViene ? kSueltasDeIdaYVuelta : kSueltas)) {
        ++v.sueltas;
        return log_.escribir(entrada);
    }
    ++v.calladas;
    v.ultima = std::string(entrada.procedimiento) + ": " + std::string(entrada.mensaje);
    if (!entrada.descripcion.empty()) v.ultima.append(", ").append(entrada.descripcion);
    v.conexion = entrada.conexion;
    v.estacion = entrada.estacion;
}

void Bitacora::alPasarElTiempo() {
    if (ventanas_.empty()) return;
    const std::int64_t ahora = reloj_.monotonicoMs();
    if (ahora - miradasMs_ < kEntreMiradasMs) return;
    miradasMs_ = ahora;
    for (auto v = ventanas_.begin(); v != ventanas_.end();)
        v = cerrar(v->first, v->second, ahora) ? ventanas_.erase(v) : std::next(v);
}

void Bitacora::terminar() {
    const std::int64_t ahora = reloj_.monotonicoMs();
    for (const auto& [clave, v] : std::exchange(ventanas_, {}))
        contarCalladas(clave, v, ahora);
}

void Bitacora::contarCalladas(std::uint64_t clave, const Ventana& v, std::int64_t ahora) {
    if (v.calladas == 0) return;
    constexpr std::array kNombres = {
        std::pair{"Enlace intermitente", Novedad::EnlaceIntermitente},
        std::pair{"Estacion intermitente", Novedad::EstacionIntermitente},
        std::pair{"Bloques conmutados", Novedad::BloquesConmutados},
        std::pair{"Escrituras fallidas", Novedad::EscriturasFallidas},
        std::pair{"Lecturas forzadas en vano", Novedad::ForzadosEnVano},
        std::pair{"Guion intermitente", Novedad::GuionIntermitente},
        std::pair{"Cliente intermitente", Novedad::ClientesIntermitentes},
    };
    const auto& [procedimiento, novedad] = kNombres[clave >> kBitsDeLugar];
    const std::string que = "y " + std::to_string(v.calladas) + " mas en " +
                            cuanto(ahora - v.desdeMs) + "; al final, " + v.ultima;
    EntradaDeLog e{kDriver, procedimiento, que};
    e.novedad = novedad;
    e.conexion = v.conexion;
    e.estacion = v.estacion;
    log_.escribir(e);
}

bool Bitacora::cerrar(std::uint64_t clave, Ventana& v, std::int64_t ahora) {
    const bool quieta = ahora - v.ultimoMs >= kVentanaMs;
    if (!quieta && ahora - v.desdeMs < v.largoMs) return false;
    contarCalladas(clave, v, ahora);
    if (quieta) return true;
    // It goes on: it is counted from the start now, and reported more seldom. Where nothing was
    // counted the next ones are worth an entry again.
    v.desdeMs = ahora;
    v.largoMs = v.calladas > 0 ? std::min(v.largoMs * 2, kVentanaMayorMs) : kVentanaMs;
    v.sueltas = v.calladas > 0 ? kSueltas : 0;
    v.calladas = 0;
    return false;
}

} // namespace kv
