// SPDX-License-Identifier: Apache-2.0
#include "model/modelo.h"

#include "plant/claves_de_bloque.h"
#include "plant/duraciones.h"
#include "plant/limites.h"
#include "plant/valor_y_estado.h"
#include "text/direccion_de_red.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "view/columnas.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace kv {
namespace {

// A time-out or rest of no length would spin a timer or stop it for ever.
double util(double segundos, double maximo, double porDefecto) {
    return esTiempo(segundos, maximo) ? segundos : porDefecto;
}

} // namespace

Modelo::Modelo(Tablas& tablas, GestorDeConexiones& conexiones, Publicacion& publicacion,
               RelojDeBloques& reloj, Vista& vista)
    : tablas_(tablas), conexiones_(conexiones), publicacion_(publicacion), reloj_(reloj),
      vista_(vista), filasDeVariables_(tablas, vista.lstViewVariables),
      filasDeBloques_(tablas, vista.lstViewEstadoDeBloques) {}

void Modelo::levantarEstacion(const Estacion& configurada) {
    const std::string ip(recortar(configurada.ip));
    const std::string puertoTCP(recortar(configurada.puertoTCP));
    Indice k = tablas_.buscarConexion(ip, puertoTCP);
    if (k == kNinguno) k = levantarConexion(configurada.puerto, ip, puertoTCP);
    ConexionIP& c = tablas_.conexiones[k];
    for (const Indice e : c.estacionesEnUso()) {
        if (c.estaciones[e].indice == configurada.indice) return;
    }
    Estacion estacion;
    estacion.numero = configurada.numero;
    estacion.indice = configurada.indice;
    estacion.numeroDeEstacion = tablas_.cantidadDeEstaciones += 1;
    const auto e = static_cast<Indice>(c.estaciones.agregar(estacion));
    tablas_.anotarEstacion(k, e);
    vista_.lstViewSockets.agregarA(c.filaLista, de_conexiones::kEstaciones,
                                   rotulo(c.estaciones[e]));
}

std::string Modelo::rotulo(const Estacion& e) {
    return "[PLC " + textoDeNumero(e.numero) + " - Indice " + textoDeNumero(e.indice) +
           " n°L:" + textoDeNumero(e.numeroDeEstacion) + "]";
}

Indice Modelo::levantarConexion(double puerto, const std::string& ip,
                                const std::string& puertoTCP) {
    ConexionIP nueva;
    nueva.ip = ip;
    nueva.puertoTCP = puertoTCP;
    nueva.puerto = puerto;
    nueva.numeroDePuertoTCP = puertoTcpDeTexto(puertoTCP).value_or(0);
    conexiones_.levantarZocalo();
    nueva.filaLista = vista_.lstViewSockets.agregar(textoDeNumero(puerto));
    vista_.lstViewSockets.poner(nueva.filaLista, de_conexiones::kDireccion, direccionDe(nueva));
    const auto k = static_cast<Indice>(tablas_.conexiones.agregar(std::move(nueva)));
    tablas_.anotarConexion(k);
    return k;
}

void Modelo::copiarDePuerto(BloqueLectura& b, const Puerto& puerto) {
    b.tiempoFueraMs =
        milisegundos(util(puerto.tiempoFuera, limite::kTiempoFuera, de_puerto::kTiempoFuera));
    b.reconeccionMs =
        milisegundos(util(puerto.segReconeccion, limite::kTiempo, de_puerto::kReconeccion));
    b.reintentosMax = puerto.reintentosMax;
}

void Modelo::anotarPaciencia(ConexionIP& c, const BloqueLectura& b) {
    const double intentos = std::clamp(b.reintentosMax, 0.0, limite::kReintentos) + 1;
    c.pacienciaMs = std::max<std::int64_t>(
        c.pacienciaMs, std::llround(static_cast<double>(b.tiempoFueraMs) * intentos));
}

double Modelo::levantarBloquePoleo(double puerto, double plc, const std::string& direccion,
                                   double cantidad, double scanSegundos, bool activo,
                                   double nivel) {
    const auto enRango = [](double n, double desde, double hasta) {
        return n >= desde && n <= hasta && n == std::floor(n);
    };
    const auto lugar = tablas_.buscarEstacion(puerto, plc);
    if (lugar.conexion == kNinguno || !tablas_.puertos.vive(puerto - 1) ||
        !enRango(cantidad, 1, limite::kCantidad) || !enRango(nivel, 0, limite::kNivel) ||
        !esScan(scanSegundos))
        return -1;
    Indice primero = kNinguno;
    for (const std::string& registro : registrosDeBloque(direccion, cantidad)) {
        const Indice k =
            levantarRegistro(lugar, puerto, registro, scanSegundos, activo, nivel, primero);
        if (primero == kNinguno) primero = k;
    }
    return primero;
}

Indice Modelo::levantarRegistro(const Tablas::LugarDeEstacion& lugar, double puerto,
                                const std::string& direccion, double scanSegundos, bool activo,
                                double nivel, Indice primero) {
    ConexionIP& c = tablas_.conexiones[lugar.conexion];
    Estacion& estacion = c.estaciones[lugar.estacion];
    const auto k = static_cast<Indice>(tablas_.bloques.agregar({}));
    BloqueLectura& b = tablas_.bloques[k];
    b.nivel = nivel;
    b.activoPorDefecto = activo;
    b.indice = k;
    b.primeroDelConfigurado = primero == kNinguno ? k : primero;
    b.idConexion = lugar.conexion;
    b.idEstacion = lugar.estacion;
    b.puerto = static_cast<std::int16_t>(puerto);
    b.plc = estacion.numero;
    b.clave = claveDeBloque(puerto, b.plc, direccion);
    tablas_.largoDeClaves += b.clave.size();
    reloj_.agregar(k, scanSegundos);
    copiarDePuerto(b, tablas_.puertos[static_cast<std::size_t>(puerto) - 1]);
    anotarPaciencia(c, b);
    tablas_.anotarNivel(k);

    levantarVariable(b);
    const auto trama = armarTramaLectura(direccion, textoDeNumero(estacion.indice));
    b.tieneTrama = trama.has_value();
    if (trama) b.tramaSolicitud = *trama;
    b.posicionEnConexion = static_cast<Indice>(c.bloques.size());
    c.bloques.push_back(k);
    estacion.bloques.push_back(k);
    tablas_.anotarRegistro(k);
    levantarControles(b);
    publicacion_.ponerActivo(k, activo);
    return k;
}

void Modelo::levantarVariable(BloqueLectura& b) {
    b.estado = kBad;
    tablas_.cantidadDePuntos += 1;
    Lista& lista = vista_.lstViewVariables;
    b.filaVariable = lista.agregar(b.clave, b.indice);
    publicacion_.darDeAlta(b);
}

void Modelo::levantarControles(const BloqueLectura& b) {
    Lista& lista = vista_.lstViewEstadoDeBloques;
    const FilaDeLista fila = lista.agregar(b.clave, b.indice);
    tablas_.bloques[b.indice].filaBloque = fila;
    using namespace de_bloques;
    lista.poner(fila, kHabilitado, "SI");
    if (!b.tieneTrama)
        lista.poner(fila, kNota, "NO SE POLEA: direccion o indice fuera de trama");
    else if (b.scanMs == 0)
        lista.poner(fila, kNota, "SCAN 0: se lee al conectar y al forzar");
}

bool Modelo::cambiarPuerto(Indice cual, const Puerto& puerto) {
    const auto loQueRige = [](const Puerto& p) {
        return std::tie(p.tiempoFuera, p.scanPorDefecto, p.reintentosMax, p.segReconeccion);
    };
    Puerto& suyo = tablas_.puertos[cual];
    const bool cambia = loQueRige(suyo) != loQueRige(puerto);
    suyo = puerto;
    return cambia;
}

void Modelo::tomarTiempos(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    c.pacienciaMs = 0;
    for (const Indice i : c.bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        copiarDePuerto(b, tablas_.puertos[static_cast<std::size_t>(b.puerto) - 1]);
        if (!b.retirado) anotarPaciencia(c, b);
    }
}

void Modelo::cambiarNivel(Indice bloque, double nivel) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (std::exchange(b.nivel, nivel) != nivel) tablas_.anotarNivel(bloque);
    vista_.lstViewEstadoDeBloques.cambio(b.filaBloque);
}

void Modelo::retirarBloque(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    reloj_.retirar(bloque);
    b.activoPorDefecto = false;
    const auto bits =
        b.bits ? std::count(b.bits->bitDefinido.begin(), b.bits->bitDefinido.end(), true) : 0;
    tablas_.cantidadDePuntos -= 1 + static_cast<double>(bits);
    if (b.aPedido) --tablas_.estacionDe(b).aPedido;
    publicacion_.darDeBaja(bloque);
    tablas_.olvidarBloque(bloque);
    vista_.lstViewEstadoDeBloques.retirar(b.filaBloque);
}

void Modelo::retirarEstacion(Indice conexion, Indice estacion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    c.estaciones[estacion].retirada = true;
    tablas_.olvidarEstacion(conexion, estacion);
    std::string quedan;
    for (const Indice e : c.estacionesEnUso())
        quedan += rotulo(c.estaciones[e]);
    if (quedan.empty()) {
        tablas_.olvidarConexion(conexion);
        return conexiones_.retirar(conexion);
    }
    vista_.lstViewSockets.poner(c.filaLista, de_conexiones::kEstaciones, quedan);
}

void Modelo::terminarCambios() {
    vista_.lblCantidadDePuntos.poner(textoDeNumero(tablas_.cantidadDePuntos));
}

void Modelo::levantarBitDeDireccion(Indice bloque, std::size_t bit) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (bit > 15) return;
    if (!b.bits) b.bits = std::make_unique<BitsDeVariable>();
    if (b.bits->bitDefinido[bit]) return;
    b.bits->bitDefinido[bit] = true;
    tablas_.cantidadDePuntos += 1;
    const std::string clave = b.clave + "." + textoDeNumero(static_cast<double>(bit));
    b.bits->bitNombres[bit] = nombreDeScript(clave);
    Lista& lista = vista_.lstViewVariables;
    const FilaDeLista fila = lista.agregar(clave, b.indice);
    b.bits->bitFilas[bit] = fila;
    publicacion_.darDeAltaBit(b, bit);
}

} // namespace kv
