// SPDX-License-Identifier: Apache-2.0
#include "write/solicitudes.h"

#include "plant/claves_de_bloque.h"
#include "plant/limites.h"
#include "plant/ordenantes.h"
#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <cmath>
#include <new>

namespace kv {

SolicitudesDeEscritura::SolicitudesDeEscritura(Tablas& tablas, Turnos& turnos,
                                               EjecucionDeEscrituras& ejecucion, Sucesos& sucesos)
    : tablas_(tablas), turnos_(turnos), ejecucion_(ejecucion), sucesos_(sucesos) {}

double SolicitudesDeEscritura::escribirDireccion(std::string_view direccion, double valor,
                                                 std::string_view origen) {
    return levantarBloque_De_Escritura(direccion, std::nearbyint(valor), origen); // halves: to even
}

double SolicitudesDeEscritura::levantarBloque_De_Escritura(std::string_view direccion, double valor,
                                                           std::string_view origen) {
    using enum ClaseDeRechazo;
    // Nothing is thrown for what is refused: whoever may write can ask for it without end.
    const auto negar = [&](ClaseDeRechazo clase, Rechazo rechazo) {
        return rechazar({direccion, enPalabras(rechazo), origen}, valor, clase);
    };
    try {
        DireccionPartida d;
        if (!partirDireccion(direccion, d)) return negar(Argumento, Rechazo::DireccionNoValida);
        // What names no bit must not become a write of the whole register.
        if (d.bit == kNoEsBit) return negar(Argumento, Rechazo::BitFueraDeRango);
        const std::string clave = claveDeBloque(d.puerto, d.plc, d.registro);
        const auto lugar = tablas_.buscarEstacion(d.puerto, d.plc);
        if (lugar.conexion == kNinguno)
            return rechazar({direccion, enPalabras(Rechazo::SinPlc), origen, clave}, valor, SinPlc);
        if (!turnos_.conectada(lugar.conexion))
            return rechazar({direccion, enPalabras(Rechazo::SinConexion), origen, clave}, valor,
                            SinConexion, lugar.conexion);
        const Indice leido = tablas_.buscarPorRegistro(lugar.conexion, d.plc, d.registro);
        if (leido == kNinguno) return negar(Argumento, Rechazo::NadieLoLee);
        BloqueLectura& b = tablas_.bloques[leido];
        if (const Indice igual = igualSinEnviar(b, d, valor); igual != kNinguno) {
            unir(tablas_.escrituras[igual], origen);
            return igual;
        }
        if (ejecucion_.enEspera() >= (esDelGuion(origen) ? kEnEsperaDelGuion : kEnEsperaMaximo))
            return negar(Memoria, Rechazo::DemasiadasEnEspera);
        BloqueEscritura nueva;
        if (!armar(nueva, d, b, valor)) return negar(Desborde, Rechazo::FueraDeTrama);
        nueva.origen = origen;
        const Indice n = ejecucion_.tomarLugar(std::move(nueva));
        b.ultimaEscritura = n;
        ejecucion_.enviarSiguiente(lugar.conexion);
        ejecucion_.pedirReclamo();
        return n;
    } catch (const std::exception& falla) {
        const bool sinMemoria = dynamic_cast<const std::bad_alloc*>(&falla) != nullptr;
        return rechazar({direccion, falla.what(), origen}, valor, sinMemoria ? Memoria : Interna);
    }
}

double SolicitudesDeEscritura::rechazar(TextoDeRechazo texto, double valor, ClaseDeRechazo clase,
                                        Indice conexion) {
    texto.direccion = texto.direccion.substr(0, limite::kDireccionEnMensaje);
    sucesos_.decir({.que = Que::EscrituraRechazada,
                    .detalle = static_cast<std::int16_t>(clase),
                    .conexion = conexion,
                    .callado = esDelGuion(texto.origen),
                    .numero = valor},
                   texto.unir());
    return -1;
}

void SolicitudesDeEscritura::unir(const BloqueEscritura& e, std::string_view origen) {
    sucesos_.decir({.que = Que::EscrituraUnida,
                    .conexion = e.idConexion,
                    .bloque = e.indiceBloqueLectura,
                    .escritura = e.indice,
                    .bit = static_cast<std::int8_t>(e.bit),
                    .callado = esDelGuion(origen),
                    .numero = e.pedido},
                   origen);
}

/// A write that waits for its first turn, asks for the same and is the last one of its register: a
/// second one would change nothing. One that has left may have been answered already, and the plant
/// may have changed since.
Indice SolicitudesDeEscritura::igualSinEnviar(const BloqueLectura& leido, const DireccionPartida& d,
                                              double valor) const {
    const Indice n = leido.ultimaEscritura;
    if (n == kNinguno || n >= tablas_.escrituras.limiteSuperior()) return kNinguno;
    const BloqueEscritura& e = tablas_.escrituras[n];
    const bool espera = e.paso == PasoDeEscritura::PorLeer || e.paso == PasoDeEscritura::PorEnviar;
    return espera && e.indiceBloqueLectura == leido.indice && e.bit == d.bit && e.pedido == valor
               ? n
               : kNinguno;
}

bool SolicitudesDeEscritura::armar(BloqueEscritura& e, const DireccionPartida& d,
                                   const BloqueLectura& leido, double valor) const {
    const std::string estacion = textoDeNumero(tablas_.estacionDe(leido).indice);
    // A bit's word is made when its register has been read.
    const double palabra = d.bit >= 0 ? 0 : valor;
    const auto escritura = armarTramaEscritura(d.registro, estacion, palabra);
    if (!escritura || !leido.tieneTrama) return false;
    e.tramaSolicitud = *escritura;
    e.idConexion = leido.idConexion;
    e.indiceBloqueLectura = leido.indice;
    e.bit = d.bit;
    e.pedido = valor;
    e.palabra = palabra;
    return true;
}

} // namespace kv
