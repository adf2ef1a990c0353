// SPDX-License-Identifier: Apache-2.0
#include "events/redaccion.h"

#include "events/fin_de_escritura.h"
#include "events/rechazo.h"
#include "text/numeros.h"

namespace kv {
namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

/// "[7][E8]" for the first bytes of many.
void agregarBytes(std::string& a, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes.first(std::min(bytes.size(), kBytesEnTraza))) {
        a += '[';
        agregarHexadecimal(a, b);
        a += ']';
    }
    if (bytes.size() > kBytesEnTraza) a += "...";
}

/// Whether the operator's box has words of its own for this class of refusal.
bool tienePalabrasPropias(std::int16_t clase) {
    return clase == static_cast<std::int16_t>(ClaseDeRechazo::SinPlc) ||
           clase == static_cast<std::int16_t>(ClaseDeRechazo::SinConexion);
}

} // namespace

std::string_view nombreDe(Caja caja) {
    switch (caja) {
    case Caja::txtTramas:
        return "txtTramas";
    case Caja::txtTramasDescartadas:
        return "txtTramasDescartadas";
    case Caja::txtDemandaLecturaEscritura:
        return "txtDemandaLecturaEscritura";
    case Caja::txtTimer:
        return "txtTimer";
    case Caja::txtTimerIpPuerto:
        return "txtTimerIpPuerto";
    case Caja::txtTimerEscritura:
        return "txtTimerEscritura";
    case Caja::Text1:
        return "Text1";
    case Caja::Text2:
        return "Text2";
    case Caja::Ninguna:
        break;
    }
    return {};
}

SusCajas cajasDe(const Suceso& s) {
    if (s.callado) return {};
    switch (s.que) {
    case Que::PausaEmpieza:
    case Que::PausaTermina:
    case Que::LineaRetenida:
    case Que::LineaNoCalla:
    case Que::EnlaceCortado:
    case Que::BloqueHabilitado:
    case Que::TiempoFuera:
    case Que::TiempoFueraDeEscritura:
        return {Caja::txtTimerIpPuerto};
    case Que::BloqueDeshabilitado:
    case Que::EscrituraAbandonada:
        return {Caja::txtTimerIpPuerto, Caja::txtTramas};
    case Que::Descarte:
    case Que::Sobrante:
        return {Caja::txtTramas, Caja::txtTramasDescartadas};
    case Que::TicDeBloque:
    case Que::FinDelDescanso:
        return {Caja::txtTimer};
    case Que::AlCliente:
        return {Caja::Text1};
    case Que::DelCliente:
    case Que::RepetidasDelCliente:
        return {Caja::Text2};
    case Que::EnlaceArriba:
    case Que::EnlaceAbajo:
    case Que::EnlaceNoLevanta:
    case Que::BloqueConmutado:
    case Que::GuionDetenido:
    case Que::GuionSigue:
    case Que::ClienteEntra:
    case Que::ClienteSale:
    case Que::Ultimo:
        return {};
    default:
        return {asuntoDe(s.que) == Asunto::Pedido ? Caja::txtDemandaLecturaEscritura
                                                  : Caja::txtTramas};
    }
}

std::int64_t Redaccion::indiceEn(const Suceso& s, Caja caja) {
    if (caja == Caja::txtTimer) return s.bloque;
    return caja == Caja::txtTimerIpPuerto ? std::int64_t{s.conexion} : -1;
}

const std::string& Redaccion::sello(std::int64_t instante) const {
    const std::int64_t segundo = instante / 1024;
    if (segundo != selladoSegundo_) {
        selladoSegundo_ = segundo;
        sello_ = formatoDeSello(desempaquetar(instante));
    }
    return sello_;
}

void Redaccion::lineaDe(const Suceso& s, Caja caja, std::string& a) const {
    switch (asuntoDe(s.que)) {
    case Asunto::Conexion:
        return lineaDeConexion(s, a);
    case Asunto::Estacion:
        return lineaDeEstacion(s, caja, a);
    case Asunto::Lectura:
        return lineaDeLectura(s, a);
    case Asunto::PasoDeEscritura:
        return lineaDeEscritura(s, a);
    case Asunto::Guion:
        a += "  *Guion* ";
        a += sucesos_.textoDe(s);
        return;
    default:
        return lineaDePedido(s, a);
    }
}

void Redaccion::redactar(const Suceso& s, Caja caja, std::string& a) const {
    if (s.que == Que::AlCliente) {
        a += sucesos_.textoDe(s);
        return;
    }
    if (s.que == Que::DelCliente) {
        a += formatoGeneral(desempaquetar(s.instante));
        a += '[';
        a += sucesos_.textoDe(s);
        a += ']';
    } else if (s.que == Que::RepetidasDelCliente) {
        a += "  ";
        agregarNumero(a, s.numero);
        a += " escrituras repetidas en una llegada: se hacen una vez";
    } else if (s.que == Que::TicDeBloque || s.que == Que::FinDelDescanso) {
        a += "Tic Timer Bloque " + sello(s.instante) + " : " + tablas_.bloques[s.bloque].clave;
        if (s.que == Que::TicDeBloque)
            a += "\r\n ----> En Tiempo de poleo " + sello(s.instante) + " : " +
                 tablas_.bloques[s.bloque].clave;
    } else {
        a += sello(s.instante);
        lineaDe(s, caja, a);
        // Three messages have no end of line.
        if (s.que == Que::AltaSinPuerto ||
            (s.que == Que::EscrituraRechazada && tienePalabrasPropias(s.detalle)))
            return;
    }
    a += kFinDeLinea;
}

void Redaccion::lineaDeConexion(const Suceso& s, std::string& a) const {
    switch (s.que) {
    case Que::PausaEmpieza:
        a += "ACTIVACION DE TIMER ";
        break;
    case Que::PausaTermina:
        a += "HABILITACION A SIGUIENTE POOL";
        break;
    case Que::LineaRetenida:
        a += " En espera de respuestas atrasadas ";
        break;
    case Que::LineaNoCalla:
        a += " La linea no calla: se cierra ";
        break;
    case Que::EnlaceCortado:
        a += " Se corta el enlace: lo que no llego ya no sale ";
        break;
    default:
        break;
    }
}

void Redaccion::agregarRecibido(const Suceso& s, std::string& a) const {
    if (s.texto == 0) return agregarBytes(a, s.losBytes());
    const std::string_view todo = sucesos_.textoDe(s);
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(todo.data()),
                          todo.size()); // NOLINT
    const std::size_t tenidos = std::min<std::size_t>(s.cuantos, bytes.size());
    agregarBytes(a, bytes.first(tenidos));
    agregarBytes(a, bytes.subspan(tenidos));
}

void Redaccion::lineaDeEstacion(const Suceso& s, Caja caja, std::string& a) const {
    switch (s.que) {
    case Que::LlegaronBytes:
        a += "  Obteniendo bytes <- ";
        agregarRecibido(s, a);
        a += "¦ Cantidad: ";
        agregarNumero(a, s.numero);
        return;
    case Que::Recepcion:
        a += "  Recepcion <- ";
        return agregarRecibido(s, a);
    default:
        a += s.que == Que::Descarte && caja == Caja::txtTramas ? "  *Descarte CheSum* <- "
                                                               : "  *Descarte* <- ";
        agregarRecibido(s, a);
        a += "¦ Cantidad: 7";
    }
}

void Redaccion::lineaDeLectura(const Suceso& s, std::string& a) const {
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    switch (s.que) {
    case Que::Reintento:
        a += " REINTENTO ";
        agregarNumero(a, s.detalle);
        a += " Bloque: " + b.clave + " Envio -> ";
        a += trazaDeTrama(s.losBytes());
        break;
    case Que::Envio:
        a += "  Bloque: " + b.clave + " Envio -> ";
        a += trazaDeTrama(s.losBytes());
        break;
    case Que::BloqueHabilitado:
        a += " HABILITACION de " + b.clave;
        break;
    case Que::BloqueDeshabilitado:
        a += " Deshabilitacion de " + b.clave;
        break;
    case Que::TiempoFuera:
        a += " Tic Timer Time Out " + b.clave;
        break;
    default:
        a += s.que == Que::EstacionMuda ? " Estacion sin respuesta " : " Estacion contesta ";
        a += nombreDeEstacion(tablas_, s.bloque);
    }
}

void Redaccion::queYDonde(const Suceso& s, std::string_view separador, std::string& a) const {
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    a += b.clave + "[Dir " + std::string(b.direccion());
    a += separador;
    agregarNumero(a, s.numero);
    a += "] Envio -> ";
    a += trazaDeTrama(s.losBytes());
}

void Redaccion::lineaDeEscritura(const Suceso& s, std::string& a) const {
    const auto repetida = [&](std::string_view rotulo) {
        a += rotulo;
        agregarNumero(a, s.detalle);
        a += " Bloque: ";
        queYDonde(s, ": Valor ", a);
    };
    switch (s.que) {
    case Que::EscrituraLee:
        a += "Escritura de BIT: Lectura Primaria: ";
        return queYDonde(s, " : Valor ", a);
    case Que::EscrituraSale:
        a += "Escritura: ";
        return queYDonde(s, " : Valor ", a);
    case Que::EscrituraLeeOtraVez:
        return repetida(" REINTENTO LECTURA PRIMARIA ");
    case Que::EscrituraRelee:
        return repetida(" PEDIDO DE CONFIRMACION ");
    case Que::EscrituraRepite:
        return repetida(" REINTENTO ESCRITURA");
    case Que::TiempoFueraDeEscritura:
        a += " Tic Timer Time Out ESCRITURA ";
        return;
    default:
        break;
    }
    const BloqueLectura& b = tablas_.bloques[s.bloque];
    a += " Deshabilitacion de ESCRITURA: " + b.clave + " [" + std::string(b.direccion()) +
         " Valor: ";
    agregarNumero(a, s.numero);
    a += "]";
    a += kFinesDeEscritura[static_cast<std::size_t>(s.detalle)].alAbandonar;
}

void Redaccion::rechazo(const Suceso& s, std::string& a) const {
    const auto r = TextoDeRechazo::partir(sucesos_.textoDe(s));
    const auto clase = static_cast<ClaseDeRechazo>(s.detalle);
    a += " Imposible escribir.";
    if (clase == ClaseDeRechazo::SinPlc) {
        a += std::string(r.clave) + " No se encuentra PLC";
    } else if (clase == ClaseDeRechazo::SinConexion) {
        a += " Sin conexion con " + direccionDe(tablas_.conexiones[s.conexion]) +
             " Direccion: " + std::string(r.clave);
    } else {
        a += " " + std::string(r.direccion) + " = " + textoDeNumero(s.numero) + ": " +
             std::string(r.motivo);
    }
}

void Redaccion::lineaDePedido(const Suceso& s, std::string& a) const {
    const std::string dado(sucesos_.textoDe(s));
    const std::string clave = s.bloque == kNinguno ? dado : tablas_.bloques[s.bloque].clave;
    constexpr const char* kAlta = " Error al dar de alta bloque, ";
    switch (s.que) {
    case Que::EscrituraUnida:
    case Que::EscrituraTerminada:
        a += " " + direccionEscrita(tablas_, s) + " = " + textoDeNumero(s.numero) + ": ";
        a += s.que == Que::EscrituraUnida ? kYaEsperaUnaIgual
                                          : palabras(static_cast<FinDeEscritura>(s.detalle));
        break;
    case Que::EscrituraRechazada:
        rechazo(s, a);
        break;
    case Que::SinPuertoNiPlc:
        a += " NO EXISTE PUERTO O PLC ";
        break;
    case Que::ForzarSinTrama:
        a += " Imposible FORZAR, el bloque no se puede polear: " + clave;
        break;
    case Que::ForzarSinConexion:
        a += " Imposible FORZAR, Sin conexion con estacion " +
             direccionDe(tablas_.conexiones[s.conexion]);
        break;
    case Que::ForzarEnDescanso:
        a += " Imposible de forzar la lectura por deshabilitacion del bloque";
        if (s.detalle == 0) a += ": " + clave;
        break;
    case Que::Forzado:
        a += " Forzado OK " + dado;
        break;
    case Que::AltaFueraDeTrama:
        a += kAlta + ("Direccion fuera de trama. Bloque: " + dado);
        break;
    case Que::AltaSinLugar:
        a += kAlta + ("La estacion ya tiene " + textoDeNumero(s.numero)) +
             " a pedido. Bloque: " + dado;
        break;
    case Que::AltaSinPuerto:
        a += kAlta + ("No se encuentra Puerto y PLC. Bloque: " + dado);
        break;
    case Que::BloqueDadoDeAlta:
        a += " Bloque " + dado + " dado de alta. DefaultScan de " + textoDeNumero(s.numero) +
             " Segundos";
        break;
    case Que::NivelSinBloques:
        a += " Ningun bloque tiene el nivel " + textoDeNumero(s.numero);
        break;
    default:
        break;
    }
}

std::string direccionEscrita(const Tablas& tablas, const Suceso& s) {
    const std::string& clave = tablas.bloques[s.bloque].clave;
    return s.bit < 0 ? clave : clave + "." + textoDeNumero(s.bit);
}

} // namespace kv
