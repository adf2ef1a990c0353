// SPDX-License-Identifier: Apache-2.0
#include "model/filas.h"

#include "events/suceso.h"
#include "plant/bases.h"
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

const BloqueLectura* suBloque(const Tablas& tablas, const Lista& lista, std::uint32_t fila) {
    const auto i = static_cast<double>(lista.etiqueta(fila));
    return tablas.bloques.vive(i) ? &tablas.bloques[static_cast<std::size_t>(i)] : nullptr;
}

} // namespace

FilasDeVariables::FilasDeVariables(const Tablas& tablas, Lista& lista)
    : tablas_(tablas), lista_(lista) {
    lista_.redactarCon(this);
}

std::optional<std::string> FilasDeVariables::texto(std::uint32_t fila, std::size_t columna) const {
    using namespace de_variables;
    const BloqueLectura* b = suBloque(tablas_, lista_, fila);
    if (b == nullptr) return std::nullopt;
    const bool deBit = fila != b->filaVariable;
    const BitsDeVariable* bits = b->bits.get();
    if (deBit && bits == nullptr) return std::nullopt;
    const auto bit = deBit ? static_cast<std::size_t>(
                                 std::find(bits->bitFilas.begin(), bits->bitFilas.end(), fila) -
                                 bits->bitFilas.begin())
                           : 0;
    if (deBit && bit == bits->bitFilas.size()) return std::nullopt;
    const LoMostrado& mostrado = deBit ? bits->mostrado[bit] : b->mostrado;
    switch (columna) {
    case kDireccion:
        return deBit ? b->clave + "." + textoDeNumero(static_cast<double>(bit)) : b->clave;
    case kValor:
        return textoDeNumero(deBit ? bitDe(b->valor, bit) : b->valor);
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

FilasDeBloques::FilasDeBloques(const Tablas& tablas, Lista& lista)
    : tablas_(tablas), lista_(lista) {
    lista_.redactarCon(this);
}

std::optional<std::string> FilasDeBloques::texto(std::uint32_t fila, std::size_t columna) const {
    using namespace de_bloques;
    const BloqueLectura* b = suBloque(tablas_, lista_, fila);
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
