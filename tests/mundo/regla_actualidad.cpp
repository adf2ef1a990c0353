// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_actualidad.h"

#include "plant/valor_y_estado.h"
#include "text/numeros.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::int64_t kPausaMaximaMs = 1000; // that a setting may come to in a history
constexpr std::int64_t kSupervisionMs = 15'000;
constexpr std::int64_t kSilencios = 3; // time-outs of quiet that a transaction may cost
constexpr std::int64_t kRetenida = 12; // time-outs, then a line that is not quiet is closed

} // namespace

ReglaDeActualidad::Visto& ReglaDeActualidad::visto(Indice bloque) {
    if (vistos_.size() <= bloque) vistos_.resize(bloque + 1);
    return vistos_[bloque];
}

std::uint64_t& ReglaDeActualidad::escrituras(std::size_t conexion) {
    if (escrituras_.size() <= conexion) escrituras_.resize(conexion + 1);
    return escrituras_[conexion];
}

void ReglaDeActualidad::alSuceder(const kv::Suceso& s, std::string_view /*texto*/) {
    if (s.que != Que::Recepcion || s.escritura != kNinguno) return;
    anotar(s.bloque);
    contarForzada(c_.motor.tablas.bloques[s.bloque]);
    alLeer(s.bloque);
}

void ReglaDeActualidad::forzar(Indice bloque, std::uint32_t veces) {
    const BloqueLectura& b = c_.motor.tablas.bloques[bloque];
    Visto& v = visto(bloque);
    const bool desconocida = b.forzado && v.forzadas == 0; // one that was not counted is running
    if (v.forzadas == 0) v.activoAntes = b.activo;
    v.forzadas = b.tieneTrama && !desconocida ? veces : 0;
    v.forzadaTras = turno_.pedidos();
}

/// Only a read that left after it was asked for counts.
void ReglaDeActualidad::contarForzada(const BloqueLectura& b) {
    Visto& v = visto(b.indice);
    // Without a pause a repetition and a new request look the same.
    if (c_.motor.turnos.pausa() < 1 || b.retirado) v.forzadas = 0;
    if (v.forzadas == 0 || turno_.pedido(b.idConexion) <= v.forzadaTras) return;
    --v.forzadas;
    c_.exigir(b.forzado == (v.forzadas > 0), "who is read so many times is", b.indice);
    c_.exigir(v.forzadas > 0 || b.activo == v.activoAntes, "a force leaves a block as it was",
              b.indice);
}

void ReglaDeActualidad::anotar(Indice bloque) {
    Visto& v = visto(bloque);
    v.respuestaUs = c_.ahoraUs();
    v.escrituras = escrituras(c_.motor.tablas.bloques[bloque].idConexion);
}

void ReglaDeActualidad::alTerminarEscritura(std::size_t conexion) { ++escrituras(conexion); }

/// It is due after its scan; then each of the others may go before it, twice where a line is in
/// doubt, and so may writes; then it has its own tries, of which one that is in doubt is not
/// counted. Each transaction may use up its time-outs and want the line to be quiet after it.
std::int64_t ReglaDeActualidad::plazoMs(const BloqueLectura& b, std::uint64_t escrituras) const {
    const ConexionIP& c = c_.conexion(b.idConexion);
    const PlanDeConexion& p = c_.lineas[b.idConexion]->plan();
    const std::int64_t pausa = std::max(c_.plan.pausaMs, kPausaMaximaMs);
    const std::int64_t intento = (1 + kSilencios) * p.tiempoFueraMs + pausa;
    const std::int64_t lectura = p.reintentos * p.tiempoFueraMs + intento;
    const std::int64_t escritura = (2 * p.reintentos + 2) * p.tiempoFueraMs + intento;
    const auto otras = static_cast<std::int64_t>(2 * c.bloques.size() + 3);
    return b.scanMs + otras * lectura + (p.reintentos + 2) * intento +
           static_cast<std::int64_t>(escrituras + 1) * escritura + kRetenida * p.tiempoFueraMs +
           kSupervisionMs;
}

void ReglaDeActualidad::reciente(const BloqueLectura& b) {
    Visto& v = visto(b.indice);
    if (v.activo != b.activo || v.scanMs != b.scanMs) {
        v.activo = b.activo;
        v.scanMs = b.scanMs;
        anotar(b.indice);
    }
    if (b.estado != kOk || !b.activo || b.scanMs == 0) return;
    const std::int64_t plazo = plazoMs(b, escrituras(b.idConexion) - v.escrituras);
    c_.exigir(c_.ahoraUs() - v.respuestaUs <= plazo * 1000, "what is OK was answered lately",
              b.indice);
}

void ReglaDeActualidad::casillas(const BloqueLectura& b) {
    const Vista& v = c_.motor.vista;
    c_.exigir(v.lstViewEstadoDeBloques.tildada(b.filaBloque) == b.activo &&
                  v.lstViewVariables.tildada(b.filaVariable) == b.activo,
              "check boxes show what is polled", b.indice);
}

void ReglaDeActualidad::bitsIguales(Indice bloque) {
    const BloqueLectura& b = c_.motor.tablas.bloques[bloque];
    if (!b.bits || b.retirado) return;
    const Lista& filas = c_.motor.vista.lstViewVariables;
    ScriptControl& guion = c_.motor.scriptControl;
    const auto palabra = static_cast<std::uint16_t>(static_cast<std::int32_t>(b.valor));
    for (std::size_t n = 0; n < b.bits->bitDefinido.size(); ++n) {
        if (!b.bits->bitDefinido[n]) continue;
        const double valor = palabra >> n & 1;
        const FilaDeLista fila = b.bits->bitFilas[n];
        c_.exigir(filas.texto(fila, 1) == textoDeNumero(valor) &&
                      filas.texto(fila, 2).starts_with(textoEstado(b.estado)) &&
                      filas.tildada(fila) == b.activo,
                  "a bit's row says what its register's does", bloque);
        const std::string& nombre = b.bits->bitNombres[n];
        if (b.bits->ranuraValor[n] == kNinguno) continue;
        c_.exigir(guion.valorDe(nombre) == valor && guion.valorDe(nombre + "_STATUS") == b.estado,
                  "a bit's variables say what its register's do", bloque);
    }
}

void ReglaDeActualidad::barrer() {
    const Tablas& t = c_.motor.tablas;
    for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = t.bloques[i];
        reciente(b);
        casillas(b);
        bitsIguales(b.indice);
    }
}

} // namespace kv::mundo
