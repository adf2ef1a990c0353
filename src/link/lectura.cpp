#include "link/lectura.h"

#include "link/Modulo_Tramas_KV2200.h"
#include "text/numeros.h"

#include <cmath>

namespace kv {
namespace {

constexpr std::size_t kColumnaLibre = 4; // of the blocks list

} // namespace

Lectura::Lectura(Tablas& tablas, Turnos& turnos, Publicacion& publicacion, Vista& vista,
                 Sello& sello, ArregloDeTemporizadores& Timer1_Bloques)
    : tablas_(tablas), turnos_(turnos), publicacion_(publicacion), vista_(vista), sello_(sello),
      Timer1_Bloques_(Timer1_Bloques) {}

void Lectura::interpretarTramaRecepcionada_OK(Indice conexion) {
    ConexionIP& c = tablas_.conexiones[conexion];
    const Indice i = c.bloqueEnCurso;
    const double valor =
        valorDeRespuesta(std::span<const std::uint8_t, kLargoRespuesta>(c.recepcion));
    vista_.txtTramas.agregar(sello_.ahora() + "  Recepcion <- " + c.recepcionTexto + "\r\n");
    // Everything is settled before anybody is told: those who are told may let events run.
    Turnos::vaciarRecepcion(c);
    BloqueLectura& b = tablas_.bloques[i];
    b.scanBasesRestantes = 0;
    b.tiempoFueraBasesRestantes = 0;
    b.reintentos = 0;
    if (b.forzado) avanzarForzado(i);
    Timer1_Bloques_[i].rearmar(std::llround(b.scanBaseMs));
    tablas_.ponerPendiente(i, false);
    turnos_.pausar(conexion);
    publicacion_.valorLeido(i, valor);
}

void Lectura::avanzarForzado(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.forzadoContador < b.forzadoVeces) {
        b.forzadoContador += 1;
        vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kColumnaLibre,
                                            "FORZADO POR NIVEL: Recepcion " +
                                                textoDeNumero(b.forzadoContador) + " de " +
                                                textoDeNumero(b.forzadoVeces));
    } else {
        tablas_.ponerActivo(bloque, false);
        b.forzado = false;
        vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kColumnaLibre, "FORZADO POR NIVEL OK");
    }
}

} // namespace kv
