#include "write/solicitudes.h"

#include "core/tables/bases.h"
#include "link/Modulo_Tramas_KV2200.h"
#include "text/numeros.h"
#include "text/texto.h"

#include <stdexcept>

namespace kv {
namespace {

constexpr double kScanDeEscritura = 3; // seconds; the same for every source

} // namespace

SolicitudesDeEscritura::SolicitudesDeEscritura(Tablas& tablas, Turnos& turnos,
                                               EjecucionDeEscrituras& ejecucion, Vista& vista,
                                               Sello& sello, ArchivoLog& log)
    : tablas_(tablas), turnos_(turnos), ejecucion_(ejecucion), vista_(vista), sello_(sello),
      log_(log) {}

double SolicitudesDeEscritura::escribirDireccion(std::string_view direccion, double valor,
                                                 std::string_view origen) {
    return levantarBloque_De_Escritura(direccion, valor, kScanDeEscritura, origen);
}

void SolicitudesDeEscritura::decir(const std::string& texto) {
    vista_.txtDemandaLecturaEscritura.agregar(sello_.ahora() + texto);
}

SolicitudesDeEscritura::Direccion SolicitudesDeEscritura::partirDireccion(std::string_view texto) {
    const auto partes = partir(texto, '.');
    Direccion d;
    const auto puerto = numeroDeTexto(partes[0]);
    const auto plc = partes.size() > 1 ? numeroDeTexto(partes[1]) : std::nullopt;
    if (!puerto || !plc || partes.size() < 3) throw std::invalid_argument("direccion no valida");
    d.puerto = *puerto;
    d.plc = *plc;
    d.registro = recortar(partes[2]);
    if (partes.size() != 4 || !esNumerico(partes[3])) return d;
    const double bit = *numeroDeTexto(partes[3]);
    d.bit = static_cast<int>(enteroCorto(bit).value_or(-1));
    if (d.bit < 0 || d.bit > 15 || d.bit != bit) throw std::invalid_argument("bit fuera de 0 a 15");
    return d;
}

double SolicitudesDeEscritura::levantarBloque_De_Escritura(std::string_view direccion, double valor,
                                                           double scanSegundos,
                                                           std::string_view origen) {
    try {
        const Direccion d = partirDireccion(direccion);
        const std::string clave = claveDeBloque(d.puerto, d.plc, d.registro);
        const auto lugar = tablas_.buscarEstacion(d.puerto, d.plc);
        if (lugar.conexion == kNinguno) {
            decir(" Imposible escribir." + clave + " No se encuentra PLC");
            return rechazar(direccion, valor, origen, "no se encuentra PLC");
        }
        ConexionIP& c = tablas_.conexiones[lugar.conexion];
        if (!turnos_.conectada(lugar.conexion)) {
            decir(" Imposible escribir. Sin conexion con " + c.ip + ":" + c.puertoTCP +
                  " Direccion: " + clave);
            return rechazar(direccion, valor, origen, "sin conexion");
        }
        const Indice leido = tablas_.buscarPorRegistro(lugar.conexion, d.plc, d.registro);
        if (leido == kNinguno) throw std::invalid_argument("ningun bloque lee ese registro");
        BloqueLectura& b = tablas_.bloques[leido];
        if (d.bit >= 0 && b.estados[0] != kOk)
            throw std::invalid_argument("no se conoce la palabra del bit");
        if (const Indice igual = igualSinEnviar(b, d, valor); igual != kNinguno) return igual;
        if (ejecucion_.enEspera() >= kEnEsperaMaximo)
            throw std::length_error("demasiadas escrituras en espera");
        BloqueEscritura nueva;
        armar(nueva, d, b, valor, scanSegundos);
        nueva.origen = origen;
        nueva.valorAnterior = b.valores[0];
        nueva.seConociaAnterior = b.estados[0] == kOk;
        const Indice n = ejecucion_.tomarLugar(std::move(nueva));
        b.ultimaEscritura = n;
        ejecucion_.polearBloque_De_Escritura(n);
        ejecucion_.pedirReclamo();
        return n;
    } catch (const std::exception& falla) {
        log_.escribirLog("DRIVER",
                         "escritura de " + std::string(direccion.substr(0, 200)) + " valor: " +
                             textoDeNumero(valor) + " - Scan: " + textoDeNumero(scanSegundos),
                         "", falla.what());
        return rechazar(direccion, valor, origen, falla.what());
    }
}

double SolicitudesDeEscritura::rechazar(std::string_view direccion, double valor,
                                        std::string_view origen, std::string_view motivo) {
    if (ejecucion_.avisado() != nullptr)
        ejecucion_.avisado()->alRechazar(direccion, valor, origen, motivo);
    return -1;
}

/// A write that waits for its first turn, asks for the same and is the last one of its register: a
/// second one would change nothing.
Indice SolicitudesDeEscritura::igualSinEnviar(const BloqueLectura& leido, const Direccion& d,
                                              double valor) const {
    const Indice n = leido.ultimaEscritura;
    if (n == kNinguno || n >= tablas_.escrituras.limiteSuperior()) return kNinguno;
    const BloqueEscritura& e = tablas_.escrituras[n];
    const bool igual = e.activo && !e.enviada && e.indiceBloqueLectura == leido.indice &&
                       e.bit == d.bit && (e.esBit ? e.valorBit : e.valores[0]) == valor;
    return igual ? n : kNinguno;
}

void SolicitudesDeEscritura::armar(BloqueEscritura& e, const Direccion& d,
                                   const BloqueLectura& leido, double valor,
                                   double scanSegundos) const {
    const std::string estacion = textoDeNumero(leido.indiceEstacion);
    // A bit's word is made when its turn comes, from the value that is known then.
    const double palabra = d.bit >= 0 ? 0 : valor;
    const auto escritura =
        armarTramaEscritura(d.registro, estacion, palabra, e.tramaSolicitudTexto);
    const auto lectura = armarTramaLectura(d.registro, estacion, e.trazaLectura);
    if (!escritura || !lectura) throw std::out_of_range("direccion o valor fuera de trama");
    e.tramaSolicitud = *escritura;
    e.tramaLectura = *lectura;
    e.clave = leido.clave;
    e.direccion = d.registro;
    e.cantidad = 1;
    e.puerto = leido.puerto;
    e.plc = d.plc;
    e.digitos = leido.digitos;
    e.indiceEstacion = leido.indiceEstacion;
    e.idConexion = leido.idConexion;
    e.idEstacion = leido.idEstacion;
    e.valores.assign(1, valor);
    e.estados.assign(1, 0);
    e.esBit = d.bit >= 0;
    e.bit = d.bit;
    e.valorBit = d.bit >= 0 ? valor : 0;
    e.indiceBloqueLectura = leido.indice;
    e.scanSegundos = scanSegundos;
    establecerBaseDeTiempoEnMilisegundos(scanSegundos, e.scanBaseMs, e.scanCantidadBases);
    e.tiempoFueraSegundos = leido.tiempoFueraSegundos;
    e.tiempoFueraBaseMs = leido.tiempoFueraBaseMs;
    e.tiempoFueraCantidadBases = leido.tiempoFueraCantidadBases;
    e.segReconeccion = leido.segReconeccion;
    e.reconeccionBaseMs = leido.reconeccionBaseMs;
    e.reconeccionCantidadBases = leido.reconeccionCantidadBases;
    e.reintentosMax = leido.reintentosMax;
}

} // namespace kv
