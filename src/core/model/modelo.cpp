#include "core/model/modelo.h"

#include "core/tables/bases.h"
#include "link/Modulo_Tramas_KV2200.h"
#include "text/numeros.h"

#include <cmath>

namespace kv {
namespace {

// A time-out or rest of no length would spin a timer or stop it for ever.
constexpr double kTiempoFueraPorDefecto = 5;
constexpr double kReconeccionPorDefecto = 30;

double segundosUtiles(double segundos, double porDefecto) {
    return segundos > 0 && segundos <= Modelo::kScanMaximo ? segundos : porDefecto;
}

void partirEnBases(double segundos, double& baseMs, double& cantidad) {
    establecerBaseDeTiempoEnMilisegundos(segundos, baseMs, cantidad);
    if (baseMs > 0 && baseMs < 1) baseMs = 1;
}

} // namespace

Modelo::Modelo(Tablas& tablas, GestorDeConexiones& conexiones, Publicacion& publicacion,
               Vista& vista, Sello& sello, ArregloDeTemporizadores& Timer1_Bloques)
    : tablas_(tablas), conexiones_(conexiones), publicacion_(publicacion), vista_(vista),
      sello_(sello), Timer1_Bloques_(Timer1_Bloques) {}

void Modelo::levantarPuerto(double numero, double tiempoFuera, double scanPorDefecto,
                            double reintentosMax, double segReconeccion, double tipoPlcPorDefecto,
                            bool /*leerDespuesDeEscribir*/) {
    tablas_.puertos.agregar({numero, tiempoFuera, scanPorDefecto, reintentosMax, segReconeccion,
                             tipoPlcPorDefecto, false});
}

void Modelo::levantarEstacion(double puerto, const std::string& ip, const std::string& puertoTCP,
                              double numero, double digitos, double indice) {
    const auto numeroCorto = enteroCorto(numero);
    const auto digitosCortos = enteroCorto(digitos);
    const auto indiceCorto = enteroCorto(indice);
    if (!numeroCorto || !digitosCortos || !indiceCorto) return;
    Indice k = tablas_.buscarConexion(ip, puertoTCP);
    if (k == kNinguno) k = levantarConexion(puerto, ip, puertoTCP);
    ConexionIP& c = tablas_.conexiones[k];
    for (std::size_t e = 0; e < c.estaciones.limiteSuperior(); ++e) {
        if (c.estaciones[e].indice == *indiceCorto) return;
    }
    Estacion estacion;
    estacion.numero = *numeroCorto;
    estacion.digitos = *digitosCortos;
    estacion.indice = *indiceCorto;
    estacion.numeroDeEstacion = tablas_.cantidadDeEstaciones += 1;
    const auto e = static_cast<Indice>(c.estaciones.agregar(estacion));
    tablas_.anotarEstacion(k, e);
    vista_.lstViewSockets.agregarA(c.filaLista, 3,
                                   "[PLC " + textoDeNumero(numero) + " - Indice " +
                                       textoDeNumero(indice) +
                                       " n°L:" + textoDeNumero(estacion.numeroDeEstacion) + "]");
}

Indice Modelo::levantarConexion(double puerto, const std::string& ip,
                                const std::string& puertoTCP) {
    ConexionIP nueva;
    nueva.ip = ip;
    nueva.puertoTCP = puertoTCP;
    nueva.puerto = puerto;
    const auto numero = entero(numeroDeTexto(puertoTCP).value_or(0)).value_or(0);
    nueva.numeroDePuertoTCP =
        numero >= 1 && numero <= 65535 ? static_cast<std::uint32_t>(numero) : 0;
    nueva.idSocket = conexiones_.levantarIP_oRetornarIdDeSocket(ip, puertoTCP);
    nueva.filaLista = vista_.lstViewSockets.agregar(textoDeNumero(puerto));
    vista_.lstViewSockets.poner(nueva.filaLista, 1, ip + ":" + puertoTCP);
    const auto k = static_cast<Indice>(tablas_.conexiones.agregar(std::move(nueva)));
    tablas_.anotarConexion(k);
    vista_.txtTimerIpPuerto.usar(k, ip + ":" + puertoTCP);
    return k;
}

void Modelo::copiarDePuerto(BloqueLectura& b, const Puerto& puerto) const {
    b.tiempoFueraSegundos = segundosUtiles(puerto.tiempoFuera, kTiempoFueraPorDefecto);
    b.segReconeccion = segundosUtiles(puerto.segReconeccion, kReconeccionPorDefecto);
    b.reintentosMax = puerto.reintentosMax;
    partirEnBases(b.segReconeccion, b.reconeccionBaseMs, b.reconeccionCantidadBases);
    partirEnBases(b.tiempoFueraSegundos, b.tiempoFueraBaseMs, b.tiempoFueraCantidadBases);
    partirEnBases(b.scanSegundos, b.scanBaseMs, b.scanCantidadBases);
    b.scanBasesRestantes = b.scanCantidadBases;
}

double Modelo::levantarBloquePoleo(double puerto, double plc, const std::string& direccion,
                                   double cantidad, double scanSegundos, bool activo,
                                   double nivel) {
    const auto enRango = [](double n, double desde, double hasta) {
        return n >= desde && n <= hasta && n == std::floor(n);
    };
    const auto lugar = tablas_.buscarEstacion(puerto, plc);
    if (lugar.conexion == kNinguno || !tablas_.puertos.vive(puerto - 1) ||
        !enRango(cantidad, 1, kCantidadMaxima) || !enRango(nivel, 0, kNivelMaximo) ||
        !(scanSegundos >= 0 && scanSegundos <= Modelo::kScanMaximo))
        return -1;
    ConexionIP& c = tablas_.conexiones[lugar.conexion];
    const Estacion& estacion = c.estaciones[lugar.estacion];
    const auto k = static_cast<Indice>(tablas_.bloques.limiteSuperior());
    BloqueLectura& b = tablas_.bloques[k];
    b.cantidad = cantidad;
    b.nivel = nivel;
    b.activo = b.activoPorDefecto = activo;
    b.indice = k;
    b.idConexion = lugar.conexion;
    b.idEstacion = lugar.estacion;
    b.digitos = estacion.digitos;
    b.indiceEstacion = estacion.indice;
    b.puerto = static_cast<std::int16_t>(puerto);
    b.plc = plc;
    b.direccion = direccion;
    b.clave = claveDeBloque(puerto, plc, direccion);
    b.scanSegundos = scanSegundos;
    copiarDePuerto(b, tablas_.puertos[static_cast<std::size_t>(puerto) - 1]);

    auto& niveles = tablas_.bloquesPorNivel;
    if (nivel >= static_cast<double>(niveles.size()))
        niveles.resize(static_cast<std::size_t>(nivel) + 1);
    niveles[static_cast<std::size_t>(nivel)] += textoDeNumero(k) + ";";

    levantarVariables(b);
    const auto trama =
        armarTramaLectura(direccion, textoDeNumero(b.indiceEstacion), b.tramaSolicitudTexto);
    b.tieneTrama = trama.has_value();
    if (trama) b.tramaSolicitud = *trama;
    b.posicionEnConexion = static_cast<Indice>(c.bloques.size());
    c.bloques.push_back(k);
    tablas_.bloques.crecer();
    tablas_.anotarRegistro(k);
    levantarControles(b);
    return k;
}

void Modelo::levantarVariables(BloqueLectura& b) {
    const auto cuantas = static_cast<std::size_t>(b.cantidad);
    b.nombreScript = nombreDeScript(b.clave);
    b.valores.assign(cuantas, 0);
    b.estados.assign(cuantas, kBad);
    b.numerosDePunto.assign(cuantas, 0);
    b.filasVariables.assign(cuantas, kSinFila);
    Lista& lista = vista_.lstViewVariables;
    for (std::size_t j = 0; j < cuantas; ++j) {
        b.numerosDePunto[j] = tablas_.cantidadDePuntos += 1;
        const FilaDeLista fila = lista.agregar(b.clave, b.indice);
        b.filasVariables[j] = fila;
        lista.poner(fila, 1, "0");
        lista.poner(fila, 2, textoEstado(kBad));
        lista.poner(fila, 3, sello_.ahora());
        lista.poner(fila, 4, b.nombreScript);
        lista.tildar(fila, b.activo);
    }
    publicacion_.darDeAlta(b);
}

void Modelo::levantarControles(const BloqueLectura& b) {
    Lista& lista = vista_.lstViewEstadoDeBloques;
    const FilaDeLista fila = lista.agregar(b.clave, b.indice);
    tablas_.bloques[b.indice].filaBloque = fila;
    lista.poner(fila, 1, textoDeNumero(b.nivel));
    lista.poner(fila, 2, textoDeNumero(b.scanSegundos));
    lista.poner(fila, 3, "SI");
    if (!b.tieneTrama) lista.poner(fila, 4, "NO SE POLEA: direccion o indice fuera de trama");
    lista.tildar(fila, b.activo);
    if (Timer1_Bloques_.cuantos() == 0) Timer1_Bloques_.agregar();
    Timer1_Bloques_[b.indice].fijarIntervalo(1);
    Timer1_Bloques_.agregar();
    vista_.txtTimer.usar(b.indice, textoDeNumero(b.indice + 1.0));
}

void Modelo::levantarBitDeDireccion(Indice bloque, std::size_t k, std::size_t bit) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const auto inicio = numeroDeTexto(b.direccion);
    if (!inicio || k >= b.valores.size() || bit > 15) return;
    if (b.bits.empty()) b.bits.resize(b.valores.size());
    if (!b.bits[k]) b.bits[k] = std::make_unique<BitsDeVariable>();
    BitsDeVariable& bits = *b.bits[k];
    if (bits.bitDefinido[bit]) return;
    bits.bitDefinido[bit] = true;
    bits.bitNumerosDePunto[bit] = tablas_.cantidadDePuntos += 1;
    const std::string clave = claveDeBloque(tablas_.conexiones[b.idConexion].puerto, b.plc,
                                            textoDeNumero(*inicio + static_cast<double>(k))) +
                              "." + textoDeNumero(static_cast<double>(bit));
    bits.bitNombres[bit] = nombreDeScript(clave);
    Lista& lista = vista_.lstViewVariables;
    const FilaDeLista fila = lista.agregar(clave, b.indice);
    bits.bitFilas[bit] = fila;
    lista.poner(fila, 1, "0");
    lista.poner(fila, 2, textoEstado(b.estados[k]));
    lista.poner(fila, 3, sello_.ahora());
    lista.poner(fila, 4, bits.bitNombres[bit]);
    lista.tildar(fila, b.activo);
    publicacion_.darDeAltaBit(b, k, bit);
}

} // namespace kv
