#include "script/publicacion.h"

#include "core/tables/bases.h"
#include "text/numeros.h"

namespace kv {
namespace {

constexpr std::size_t kValor = 1; // columns of the variables list
constexpr std::size_t kEstado = 2;
constexpr std::size_t kFechaHora = 3;

} // namespace

Publicacion::Publicacion(Tablas& tablas, ScriptControl& guion, Vista& vista, Sello& sello)
    : tablas_(tablas), guion_(guion), vista_(vista), sello_(sello) {}

std::pair<Indice, Indice> Publicacion::ranuras(const std::string& nombre) {
    const auto valor = guion_.ranura(nombre);
    const auto estado = guion_.ranura(nombre + "_STATUS");
    return {valor.value_or(kNinguno), estado.value_or(kNinguno)};
}

void Publicacion::publicar(Indice ranura, double valor) {
    if (ranura != kNinguno) guion_.publicar(ranura, valor);
}

void Publicacion::notificar(const BloqueLectura& bloque, std::size_t k) {
    if (cliente_ != nullptr)
        cliente_->notificarVariable(bloque.clave, bloque.valores[k], bloque.estados[k]);
}

void Publicacion::darDeAlta(BloqueLectura& bloque) {
    std::tie(bloque.ranuraValor, bloque.ranuraEstado) = ranuras(bloque.nombreScript);
    bloque.publicable = bloque.ranuraValor != kNinguno;
    publicar(bloque.ranuraValor, 0);
    publicar(bloque.ranuraEstado, kBad);
}

void Publicacion::darDeAltaBit(BloqueLectura& bloque, std::size_t k, std::size_t b) {
    BitsDeVariable& bits = *bloque.bits[k];
    std::tie(bits.ranuraValor[b], bits.ranuraEstado[b]) = ranuras(bits.bitNombres[b]);
    publicar(bits.ranuraValor[b], 0);
    publicar(bits.ranuraEstado[b], bloque.estados[k]);
}

void Publicacion::valorLeido(Indice bloque, double valor) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.valores.empty() || (b.valores[0] == valor && b.estados[0] == kOk)) return;
    b.valores[0] = valor;
    b.estados[0] = kOk;
    publicar(b.ranuraValor, valor);
    publicar(b.ranuraEstado, kOk);
    const FilaDeLista fila = b.filasVariables[0];
    vista_.lstViewVariables.poner(fila, kValor, textoDeNumero(valor));
    vista_.lstViewVariables.poner(fila, kEstado, textoEstado(kOk));
    vista_.lstViewVariables.poner(fila, kFechaHora, sello_.ahora());
    if (!b.bits.empty()) valorEnBits(b);
    notificar(b, 0);
}

/// A bit variable follows the register that it is a bit of.
void Publicacion::valorEnBits(BloqueLectura& bloque) {
    if (!bloque.bits[0]) return;
    BitsDeVariable& bits = *bloque.bits[0];
    const auto palabra = static_cast<std::uint32_t>(entero(bloque.valores[0]).value_or(0));
    for (std::size_t b = 0; b < bits.bitDefinido.size(); ++b) {
        if (!bits.bitDefinido[b]) continue;
        const double valor = palabra >> b & 1;
        publicar(bits.ranuraValor[b], valor);
        publicar(bits.ranuraEstado[b], kOk);
        vista_.lstViewVariables.poner(bits.bitFilas[b], kValor, textoDeNumero(valor));
        vista_.lstViewVariables.poner(bits.bitFilas[b], kEstado, textoEstado(kOk));
        vista_.lstViewVariables.poner(bits.bitFilas[b], kFechaHora, sello_.ahora());
    }
}

void Publicacion::bloqueSinRespuesta(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    for (std::size_t k = 0; k < b.estados.size(); ++k) {
        b.estados[k] = kBad;
        vista_.lstViewVariables.poner(b.filasVariables[k], kEstado,
                                      "BAD - Por TimeOut - Deshabilitacion");
        publicar(b.ranuraEstado, kBad);
        notificar(b, k);
    }
}

void Publicacion::establecerBAD_En_Socket(Indice conexion) {
    const std::string ahora = sello_.ahora();
    for (const Indice i : tablas_.conexiones[conexion].bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        for (std::size_t k = 0; k < b.estados.size(); ++k) {
            b.estados[k] = kBad;
            publicar(b.ranuraEstado, kBad);
            vista_.lstViewVariables.poner(b.filasVariables[k], kEstado, textoEstado(kBad));
            vista_.lstViewVariables.poner(b.filasVariables[k], kFechaHora, ahora);
            notificar(b, k);
        }
    }
    for (const Indice i : tablas_.conexiones[conexion].bloques)
        perderBits(tablas_.bloques[i], kBad);
}

void Publicacion::perderBits(BloqueLectura& bloque, double estado) {
    const std::string ahora = sello_.ahora();
    for (const auto& bits : bloque.bits) {
        for (std::size_t b = 0; bits && b < bits->bitDefinido.size(); ++b) {
            if (!bits->bitDefinido[b]) continue;
            publicar(bits->ranuraEstado[b], estado);
            vista_.lstViewVariables.poner(bits->bitFilas[b], kEstado, textoEstado(estado));
            vista_.lstViewVariables.poner(bits->bitFilas[b], kFechaHora, ahora);
        }
    }
}

} // namespace kv
