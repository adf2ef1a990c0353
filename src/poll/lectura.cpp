#include "poll/lectura.h"

#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"

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
    if (c.bloqueDePrueba == i) c.bloqueDePrueba = kNinguno;
    BloqueLectura& b = tablas_.bloques[i];
    b.reintentos = 0;
    b.sondeo = b.enDuda = false;
    tablas_.ponerPendiente(i, false);
    Timer1_Bloques_[i].rearmar(b.scanMs);
    if (b.forzado && b.lecturaForzada) avanzarForzado(i);
    turnos_.pausar(conexion);
    if (destino_ != nullptr) destino_->alContestar(i);
    publicacion_.valorLeido(i, valor);
}

void Lectura::avanzarForzado(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.forzadoContador += 1;
    Lista& lista = vista_.lstViewEstadoDeBloques;
    if (b.forzadoContador < b.forzadoVeces) {
        // The first answer is told of as the second of its count, as it always was.
        lista.poner(b.filaBloque, kColumnaLibre,
                    "FORZADO POR NIVEL: Recepcion " + textoDeNumero(b.forzadoContador + 1) +
                        " de " + textoDeNumero(b.forzadoVeces));
        if (b.scanMs == 0) tablas_.ponerPendiente(bloque, true);
        return;
    }
    b.forzado = false;
    if (!b.activoSinForzar) publicacion_.ponerActivo(bloque, false);
    lista.poner(b.filaBloque, kColumnaLibre, "FORZADO POR NIVEL OK");
}

} // namespace kv
