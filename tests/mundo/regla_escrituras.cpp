// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_escrituras.h"

#include "events/rechazo.h"
#include "events/redaccion.h"

#include "plant/valor_y_estado.h"
#include "text/numeros.h"

#include <algorithm>
#include <utility>

namespace kv::mundo {
namespace {

constexpr std::int64_t kSinEnlaceUs = 12'000'000; // two passes of the supervision and some
constexpr std::size_t kTablaMaxima = 1000 + 10;   // finished records that are kept, and spares
constexpr std::int64_t kEnCaminoUs = 500;         // what has left the host cannot be called back
constexpr std::int64_t kVejezUs = 20'000'000;     // passes that look for old ones
constexpr int kTiemposCedidos = 40;               // time-outs of reads, and of a line held back
constexpr double kPorDefectoSegundos = 600;

std::uint16_t comoPalabra(double valor) {
    return static_cast<std::uint16_t>(static_cast<std::int32_t>(valor));
}

} // namespace

ReglaDeEscrituras::Escritor& ReglaDeEscrituras::agregar(Escritor e, std::uint8_t estacion,
                                                        std::uint8_t registro) {
    const std::uint64_t clave =
        std::uint64_t{e.conexion} << 16 | std::uint64_t{estacion} << 8 | registro;
    const auto [i, nuevo] = escritores_.try_emplace(clave, std::move(e));
    if (nuevo) de(i->second.fuente).push_back(&i->second);
    return i->second;
}

std::deque<ReglaDeEscrituras::Pedida>& ReglaDeEscrituras::cola(std::size_t n) {
    if (colas_.size() <= n) colas_.resize(n + 1);
    return colas_[n];
}

/// Where the setting was lost, its default holds.
double ReglaDeEscrituras::vigenciaUs() const {
    return 1e6 * (c_.ajustesPerdidos ? std::max(c_.plan.vigenciaSegundos, kPorDefectoSegundos)
                                     : c_.plan.vigenciaSegundos);
}

/// Takes over what has been accepted since.
void ReglaDeEscrituras::aprender(std::size_t n) {
    std::deque<Pedida>& cola = this->cola(n);
    const auto& porHacer = c_.conexion(n).escrituras;
    if (porHacer.size() <= cola.size()) return;
    auto i = porHacer.end();
    for (std::size_t k = porHacer.size() - cola.size(); k > 0; --k)
        --i;
    for (; i != porHacer.end(); ++i) {
        const BloqueEscritura& e = c_.motor.tablas.escrituras[*i];
        Pedida p;
        p.indice = *i;
        p.estacion = e.tramaSolicitud[1];
        p.registro = e.tramaSolicitud[3];
        p.bit = e.bit;
        p.pedido = e.pedido;
        p.enlace = c_.zocalo(n).conexiones();
        p.pedidaUs = c_.ahoraUs();
        cola.push_back(p);
        ++aceptadas_;
    }
    masEnEspera_ = std::max(masEnEspera_, c_.motor.ejecucion.enEspera());
}

void ReglaDeEscrituras::mirar() {
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        if (c_.conexion(n).escrituras.size() != cola(n).size()) aprender(n);
        c_.exigir(c_.conexion(n).escrituras.size() == cola(n).size(), "every write ends once", n);
        if (cola(n).empty() || cola(n).front().bit < 0) continue;
        Pedida& p = cola(n).front();
        const BloqueEscritura& e = c_.motor.tablas.escrituras[p.indice];
        if (std::exchange(p.leidaMs, e.leidaMs) != e.leidaMs) alContestar(e.indiceBloqueLectura);
    }
}

void ReglaDeEscrituras::escribirAMano(const std::string& direccion, double valor) {
    mirar();
    const std::uint64_t aceptadas = aceptadas_, otras = rechazadas_ + fundidas_;
    const double i = c_.motor.solicitudes.escribirDireccion(direccion, valor, "operador");
    mirar();
    c_.exigir(aceptadas_ - aceptadas + rechazadas_ + fundidas_ - otras == 1,
              "a write is accepted, merged or refused", static_cast<std::size_t>(valor));
    c_.exigir(i >= 0 || aceptadas_ == aceptadas, "what is refused is no write",
              static_cast<std::size_t>(valor));
}

void ReglaDeEscrituras::alEnviar(std::size_t n, const Solicitud& t) {
    aprender(n);
    std::deque<Pedida>& cola = this->cola(n);
    const bool escribe = t[0] == 0x57;
    if (cola.empty()) {
        c_.exigir(!escribe, "no write leaves that nobody waits for", n);
        return;
    }
    Pedida& p = cola.front();
    const bool suyo = p.estacion == t[1] && p.registro == t[3];
    if (!escribe) {
        if (p.bit >= 0 && suyo && p.leyoUs < 0) p.leyoUs = c_.ahoraUs();
        return;
    }
    if (c_.exigir(suyo, "writes leave in the order in which they were asked for", n))
        saleLaPalabra(n, p, static_cast<std::uint16_t>(t[4] << 8 | t[5]));
}

void ReglaDeEscrituras::saleLaPalabra(std::size_t n, Pedida& p, std::uint16_t palabra) {
    Linea& linea = *c_.lineas[n];
    const std::uint16_t delBit = escritos(p);
    bool comoSeLeyo = true;
    c_.exigir(p.enlace == c_.zocalo(n).conexiones(),
              "no write outlives the link it was asked for on", n);
    if (p.bit < 0) {
        c_.exigir(palabra == comoPalabra(p.pedido), "what leaves is what was asked for", n);
    } else {
        c_.exigir(((palabra & delBit) != 0) == (p.pedido != 0), "the bit is what was asked for", n);
        c_.exigir(p.leyoUs >= 0, "a bit's register is read first", n);
        comoSeLeyo = linea.respondio(p.estacion, p.registro, palabra, p.leyoUs,
                                     static_cast<std::uint16_t>(~delBit));
        c_.exigir(comoSeLeyo || linea.disculpada(), "the other bits are as they were read", n);
    }
    if (p.envioUs < 0) {
        c_.exigir(static_cast<double>(c_.ahoraUs() - p.pedidaUs) <= vigenciaUs() + 1e5,
                  "no write leaves too old", n);
        p.envioUs = c_.ahoraUs();
    }
    p.palabra = palabra;
    c_.exigir(++p.envios <= linea.plan().reintentos + 1, "a write is sent so often as allowed", n);
    enCamino_[linea.enlace()].push_back(
        {p.estacion, p.registro, palabra, delBit, p.leyoUs, comoSeLeyo, p.suerte});
    p.leyoUs = c_.ahoraUs(); // before it leaves again its register has to have been answered again
}

void ReglaDeEscrituras::alLlegar(std::size_t n, const EscrituraLlegada& l) {
    std::deque<EnCamino>& suyas = enCamino_[l.enlace];
    if (!c_.exigir(!suyas.empty(), "what reaches a station was sent", n)) return;
    const EnCamino e = suyas.front();
    suyas.pop_front();
    c_.exigir(e.estacion == l.estacion && e.registro == l.registro && e.palabra == l.palabra,
              "what reaches a station is what was sent", n);
    c_.exigir(!e.suerte->fin || *e.suerte->fin == FinDeEscritura::Confirmada ||
                  c_.ahoraUs() - e.suerte->finUs <= kEnCaminoUs,
              "what was given up reaches no station", n);
    // The plant may have changed the others itself since they were read, and what noise formed was
    // never read at all.
    Linea& linea = *c_.lineas[n];
    const std::int64_t cambio = linea.registro(l.estacion, l.registro).cambioUs;
    c_.exigir(!e.comoSeLeyo ||
                  ((l.antes ^ l.palabra) & static_cast<std::uint16_t>(~e.delBit)) == 0 ||
                  cambio >= e.leyoUs - 3000 * linea.plan().tiempoFueraMs,
              "a bit's write changes that bit alone", n);
}

void ReglaDeEscrituras::alSuceder(const kv::Suceso& s, std::string_view texto) {
    const Tablas& t = c_.motor.tablas;
    if (s.que == Que::EscrituraSale) alSalir(t.escrituras[s.escritura], direccionEscrita(t, s));
    if (s.que == Que::EscrituraUnida)
        alUnir(t.escrituras[s.escritura], direccionEscrita(t, s), texto);
    if (s.que == Que::EscrituraTerminada)
        alTerminar(t.escrituras[s.escritura], direccionEscrita(t, s),
                   static_cast<FinDeEscritura>(s.detalle));
    if (s.que != Que::EscrituraRechazada) return;
    ++rechazadas_;
    const auto r = TextoDeRechazo::partir(texto);
    auditoria_.esperar(r.origen, r.direccion, "?", s.numero, "rechazada: " + std::string(r.motivo));
}

void ReglaDeEscrituras::alSalir(const BloqueEscritura& e, const std::string& direccion) {
    std::deque<Pedida>& cola = this->cola(e.idConexion);
    if (c_.exigir(!cola.empty() && cola.front().indice == e.indice && !cola.front().seDijo &&
                      cola.front().envioUs >= 0,
                  "a write is said to leave when it leaves", e.idConexion)) {
        Pedida& p = cola.front();
        p.seDijo = true;
        p.anterior = anteriorDe(e);
        auditoria_.esperar(e.origen, direccion, p.anterior, p.pedido, "enviada");
    }
}

/// What the driver believed of the register or bit when the frame left.
std::string ReglaDeEscrituras::anteriorDe(const BloqueEscritura& e) const {
    const BloqueLectura& b = c_.motor.tablas.bloques[e.indiceBloqueLectura];
    if (b.estado != kOk) return "?";
    if (e.bit < 0) return textoDeNumero(b.valor);
    return (comoPalabra(b.valor) >> e.bit & 1) != 0 ? "1" : "0";
}

void ReglaDeEscrituras::alTerminar(const BloqueEscritura& b, const std::string& direccion,
                                   FinDeEscritura fin) {
    const std::size_t n = b.idConexion;
    std::deque<Pedida>& cola = this->cola(n);
    masEnEspera_ = std::max(masEnEspera_, c_.motor.ejecucion.enEspera() + 1);
    if (c_.exigir(!cola.empty() && cola.front().indice == b.indice,
                  "writes end once, in the order in which they were asked for", n)) {
        const Pedida p = cola.front();
        cola.pop_front();
        *p.suerte = {fin, c_.ahoraUs()};
        alAcabar(n);
        c_.exigir(p.seDijo == (p.envioUs >= 0), "every write that left was said to", n);
        if (fin == FinDeEscritura::Confirmada) {
            c_.exigir(p.envioUs >= 0, "what is confirmed was sent", n);
            c_.exigir(c_.lineas[n]->respondio(p.estacion, p.registro, p.palabra, p.envioUs,
                                              escritos(p)) ||
                          c_.lineas[n]->disculpada(),
                      "what is confirmed was answered", n);
            alContestar(b.indiceBloqueLectura);
        }
        auditoria_.esperar(b.origen, direccion, p.seDijo ? p.anterior : "?", p.pedido,
                           palabras(fin));
    }
}

void ReglaDeEscrituras::alUnir(const BloqueEscritura& e, const std::string& direccion,
                               std::string_view origen) {
    ++fundidas_;
    aprender(e.idConexion);
    const std::deque<Pedida>& cola = this->cola(e.idConexion);
    const auto ultima = std::find_if(cola.rbegin(), cola.rend(), [&e](const Pedida& p) {
        return p.estacion == e.tramaSolicitud[1] && p.registro == e.tramaSolicitud[3];
    });
    c_.exigir(ultima != cola.rend() && ultima->indice == e.indice && ultima->envioUs < 0,
              "only one that has not left is merged with", e.idConexion);
    auditoria_.esperar(origen, direccion, "?", e.pedido, "ya espera una igual");
}

void ReglaDeEscrituras::barrer() {
    const Tablas& t = c_.motor.tablas;
    sinEnlaceUs_.resize(c_.conexiones(), -1);
    std::erase_if(enCamino_, [this](const auto& e) { return !c_.bucle.red().vivo(e.first); });
    std::size_t enEspera = 0;
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        const ConexionIP& c = c_.conexion(n);
        enEspera += c.escrituras.size();
        if (c_.conectada(n) || c.escrituras.empty()) {
            sinEnlaceUs_[n] = -1;
        } else if (sinEnlaceUs_[n] < 0) {
            sinEnlaceUs_[n] = c_.ahoraUs();
        } else {
            c_.exigir(c_.ahoraUs() - sinEnlaceUs_[n] <= kSinEnlaceUs,
                      "a lost link gives up its writes", n);
        }
        if (cola(n).empty()) continue;
        Pedida& p = cola(n).front();
        const bool fuera = c_.escribe(n) && c.escrituraEnCurso == p.indice;
        if (p.primeraUs < 0 || fuera) p.primeraUs = c_.ahoraUs(); // it waits from here on
        if (fuera) continue;
        if (p.envioUs >= 0) { // between two tries reads have the line, for about as long as a try
            const std::int64_t plazoUs = c_.lineas[n]->plan().tiempoFueraMs * 1000;
            c_.exigir(c_.ahoraUs() - p.primeraUs <= kTiemposCedidos * plazoUs + kVejezUs,
                      "a write that has left goes on being tried", n);
            continue;
        }
        const auto vencida = std::max(static_cast<double>(p.pedidaUs) + vigenciaUs(),
                                      static_cast<double>(p.primeraUs));
        c_.exigir(static_cast<double>(c_.ahoraUs()) <= vencida + static_cast<double>(kVejezUs),
                  "what waits for too long is given up", n);
    }
    c_.exigir(enEspera == c_.motor.ejecucion.enEspera(), "the writes that wait are counted",
              enEspera);
    masEnEspera_ = std::max(masEnEspera_, enEspera);
    c_.exigir(t.escrituras.limiteSuperior() <= kTablaMaxima + masEnEspera_,
              "the write table is bounded", t.escrituras.limiteSuperior());
}

} // namespace kv::mundo
