// SPDX-License-Identifier: Apache-2.0
#include "script/publicacion.h"

#include "plant/claves_de_bloque.h"
#include "plant/valor_y_estado.h"

namespace kv {

Publicacion::Publicacion(Tablas& tablas, ScriptControl& guion, Vista& vista, Sello& sello)
    : tablas_(tablas), guion_(guion), vista_(vista), sello_(sello) {}

std::pair<Indice, Indice> Publicacion::ranuras(const std::string& nombre) {
    const auto valor = guion_.ranura(nombre);
    const auto estado = guion_.ranura(nombre + std::string(kSufijoDeEstado));
    return {valor.value_or(kNinguno), estado.value_or(kNinguno)};
}

void Publicacion::publicar(Indice ranura, double valor) {
    if (ranura != kNinguno) guion_.publicar(ranura, valor);
}

void Publicacion::notificar(const BloqueLectura& bloque) {
    if (cliente_ != nullptr) cliente_->notificarVariable(bloque.clave, bloque.valor, bloque.estado);
    if (oyente_ != nullptr) oyente_->alCambiar(bloque.indice);
}

std::int64_t Publicacion::ahora() const { return sello_.reloj().instante(); }

void Publicacion::darDeAlta(BloqueLectura& bloque) {
    std::tie(bloque.ranuraValor, bloque.ranuraEstado) = ranuras(nombreDeScript(bloque.clave));
    bloque.estadoDesde = Momento(sello_.reloj().monotonicoMs());
    bloque.mostrado = {ahora(), FraseDeEstado::SegunEstado};
    publicar(bloque.ranuraValor, 0);
    publicar(bloque.ranuraEstado, kBad);
}

void Publicacion::darDeAltaBit(BloqueLectura& bloque, std::size_t b) {
    BitsDeVariable& bits = *bloque.bits;
    std::tie(bits.ranuraValor[b], bits.ranuraEstado[b]) = ranuras(bits.bitNombres[b]);
    vista_.lstViewVariables.tildar(bits.bitFilas[b], bloque.activo);
    ponerBit(bloque, b);
}

void Publicacion::darDeBaja(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    sinRespuesta(bloque, FraseDeEstado::SegunEstado);
    b.retirado = true;
    Lista& lista = vista_.lstViewVariables;
    lista.retirar(b.filaVariable);
    for (std::size_t n = 0; b.bits && n < b.bits->bitDefinido.size(); ++n) {
        if (b.bits->bitDefinido[n]) lista.retirar(b.bits->bitFilas[n]);
    }
}

void Publicacion::ponerActivo(Indice bloque, bool activo) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    if (b.retirado) return;
    tablas_.ponerActivo(bloque, activo);
    vista_.lstViewEstadoDeBloques.tildar(b.filaBloque, activo);
    vista_.lstViewVariables.tildar(b.filaVariable, activo);
    for (std::size_t n = 0; b.bits && n < b.bits->bitDefinido.size(); ++n) {
        if (b.bits->bitDefinido[n]) vista_.lstViewVariables.tildar(b.bits->bitFilas[n], activo);
    }
}

void Publicacion::ponerEstado(BloqueLectura& b, double estado) {
    if (b.estado == estado) return;
    b.estado = estado;
    b.estadoDesde = Momento(sello_.reloj().monotonicoMs());
}

void Publicacion::valorLeido(Indice bloque, double valor) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.retirado) return;
    b.leidoMs = tablas_.conexiones[b.idConexion].recibidoUs / 1000;
    if (b.valor == valor && b.estado == kOk) return;
    b.valor = valor;
    ponerEstado(b, kOk);
    publicar(b.ranuraValor, valor);
    publicar(b.ranuraEstado, kOk);
    b.mostrado = {ahora(), FraseDeEstado::SegunEstado};
    vista_.lstViewVariables.cambio(b.filaVariable);
    ponerBits(b);
    notificar(b);
}

void Publicacion::publicarBit(const BloqueLectura& bloque, std::size_t b) {
    const BitsDeVariable& bits = *bloque.bits;
    publicar(bits.ranuraValor[b], wordbit(bloque.valor, static_cast<int>(b)));
    publicar(bits.ranuraEstado[b], bloque.estado);
}

void Publicacion::publicarTodoAlGuion() {
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& bloque = tablas_.bloques[i];
        publicar(bloque.ranuraValor, bloque.valor);
        publicar(bloque.ranuraEstado, bloque.estado);
        for (std::size_t b = 0; bloque.bits && b < bloque.bits->bitDefinido.size(); ++b) {
            if (bloque.bits->bitDefinido[b]) publicarBit(bloque, b);
        }
    }
}

/// A bit variable has the value and the status of the register that it is a bit of.
void Publicacion::ponerBit(const BloqueLectura& bloque, std::size_t b) {
    publicarBit(bloque, b);
    const BitsDeVariable& bits = *bloque.bits;
    vista_.lstViewVariables.cambio(bits.bitFilas[b]);
}

void Publicacion::ponerBits(const BloqueLectura& bloque) {
    if (!bloque.bits) return;
    for (std::size_t b = 0; b < bloque.bits->bitDefinido.size(); ++b) {
        if (bloque.bits->bitDefinido[b]) ponerBit(bloque, b);
    }
}

void Publicacion::sinRespuesta(Indice bloque, FraseDeEstado frase) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.retirado) return;
    // The value that is shown is as old as it was.
    quedarBad(b, {b.mostrado.instante(), frase});
}

void Publicacion::establecerBAD_En_Socket(Indice conexion) {
    for (const Indice i : tablas_.conexiones[conexion].bloques) {
        if (!tablas_.bloques[i].retirado)
            quedarBad(tablas_.bloques[i], {ahora(), FraseDeEstado::SegunEstado});
    }
}

void Publicacion::quedarBad(BloqueLectura& b, const LoMostrado& mostrado) {
    ponerEstado(b, kBad);
    b.mostrado = mostrado;
    vista_.lstViewVariables.cambio(b.filaVariable);
    publicar(b.ranuraEstado, kBad);
    ponerBits(b);
    notificar(b);
}

} // namespace kv
