// SPDX-License-Identifier: Apache-2.0
#include "model/filas.h"

#include "plant/claves_de_bloque.h"
#include "plant/valor_y_estado.h"
#include "text/fecha.h"
#include "text/numeros.h"
#include "view/columnas.h"

#include <algorithm>

namespace kv {
namespace {

std::string palabras(FraseDeEstado frase, double estado) {
    switch (frase) {
    case FraseDeEstado::SegunEstado:
        break;
    case FraseDeEstado::PorTiempoFuera:
        return "BAD - Por TimeOut - Deshabilitacion";
    case FraseDeEstado::EstacionMuda:
        return "BAD - Estacion sin respuesta";
    }
    return std::string(textoEstado(estado));
}

} // namespace

const BloqueLectura* FilasDeTablas::bloqueDe(std::uint32_t fila) const {
    const auto i = static_cast<double>(lista_.etiqueta(fila));
    return tablas_.bloques.vive(i) ? &tablas_.bloques[static_cast<std::size_t>(i)] : nullptr;
}

std::optional<std::string> FilasDeVariables::texto(std::uint32_t fila, std::size_t columna) const {
    using namespace de_variables;
    const BloqueLectura* b = bloqueDe(fila);
    if (b == nullptr) return std::nullopt;
    const bool deBit = fila != b->filaVariable;
    const BitsDeVariable* bits = b->bits.get();
    if (deBit && bits == nullptr) return std::nullopt;
    const auto bit = deBit ? static_cast<std::size_t>(
                                 std::find(bits->bitFilas.begin(), bits->bitFilas.end(), fila) -
                                 bits->bitFilas.begin())
                           : 0;
    if (deBit && bit == bits->bitFilas.size()) return std::nullopt;
    const LoMostrado& mostrado = b->mostrado;
    switch (columna) {
    case kDireccion:
        return deBit ? b->clave + "." + textoDeNumero(static_cast<double>(bit)) : b->clave;
    case kValor:
        return textoDeNumero(deBit ? wordbit(b->valor, static_cast<int>(bit)) : b->valor);
    case kEstado:
        return palabras(mostrado.frase(), b->estado);
    case kFechaHora:
        return formatoDeSello(desempaquetar(mostrado.instante()));
    case kNombre:
        return deBit ? bits->bitNombres[bit] : nombreDeScript(b->clave);
    default:
        return std::nullopt;
    }
}

std::optional<std::string> FilasDeBloques::texto(std::uint32_t fila, std::size_t columna) const {
    using namespace de_bloques;
    const BloqueLectura* b = bloqueDe(fila);
    if (b == nullptr) return std::nullopt;
    switch (columna) {
    case kDireccion:
        return b->clave;
    case kNivel:
        return textoDeNumero(b->nivel);
    case kScan:
        return textoDeNumero(b->scanSegundos);
    default:
        return std::nullopt;
    }
}

} // namespace kv
