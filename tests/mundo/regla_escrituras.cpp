#include "mundo/regla_escrituras.h"

#include "text/numeros.h"

namespace kv::mundo {
namespace {

constexpr std::int64_t kSinEnlaceUs = 12'000'000; // two passes of the supervision and some
constexpr std::size_t kTablaMaxima = 1000 + 10;   // finished records that are kept, and spares

std::uint64_t clave(std::size_t conexion, std::uint8_t estacion, std::uint8_t registro) {
    return std::uint64_t{conexion} << 16 | std::uint64_t{estacion} << 8 | registro;
}

bool esDe(std::string_view origen, Fuente fuente) {
    switch (fuente) {
    case Fuente::Operador:
        return origen == "operador";
    case Fuente::Cliente:
        return origen.starts_with("cliente ");
    case Fuente::Guion:
        return origen == "guion";
    default:
        return false;
    }
}

} // namespace

ReglaDeEscrituras::Escritor& ReglaDeEscrituras::agregar(Escritor e, std::uint8_t estacion,
                                                        std::uint8_t registro) {
    const auto [i, nuevo] =
        escritores_.try_emplace(clave(e.conexion, estacion, registro), std::move(e));
    Escritor& suyo = i->second;
    if (nuevo) {
        porDireccion_[suyo.direccion] = &suyo;
        de(suyo.fuente).push_back(&suyo);
    }
    return suyo;
}

ReglaDeEscrituras::Escritor* ReglaDeEscrituras::buscar(std::size_t conexion, std::uint8_t estacion,
                                                       std::uint8_t registro) {
    const auto i = escritores_.find(clave(conexion, estacion, registro));
    return i == escritores_.end() ? nullptr : &i->second;
}

std::uint64_t ReglaDeEscrituras::numero(const Escritor& e, std::uint16_t valor) {
    if (e.ultimaEnviada > e.ultimaTerminada && e.valor(e.ultimaEnviada) == valor)
        return e.ultimaEnviada;
    const std::uint64_t ultima = std::max(e.ultimaEnviada, e.ultimaTerminada);
    // Refused writes move the writer on too. Once half a band of them went by, a value says
    // nothing any more of what came before.
    const std::uint64_t atras = e.rechazadas - e.rechazadasVistas > e.mascara / 2U
                                    ? 0
                                    : std::min<std::uint64_t>(ultima, e.mascara / 4U + 1U);
    const std::uint64_t desde = ultima + 1 - atras;
    return desde + ((valor - e.base - desde) & e.mascara);
}

void ReglaDeEscrituras::escribirAMano(Escritor& e) {
    const std::uint64_t k = ++e.pedidas;
    e.enlaces[k] = c_.zocalo(e.conexion).conexiones();
    const std::uint64_t rechazadas = e.rechazadas;
    const double i = c_.motor.solicitudes.escribirDireccion(e.direccion, e.valor(k), "operador");
    if (i >= 0) ++e.aceptadas;
    c_.exigir((i < 0) == (e.rechazadas != rechazadas), "a refused write is told of", e.conexion);
    if (i < 0) e.enlaces.erase(k);
}

void ReglaDeEscrituras::alEnviar(std::size_t n, const Solicitud& t) {
    Escritor* e = buscar(n, t[1], t[3]);
    if (e == nullptr || e->fuente == Fuente::Bit) return;
    const std::uint64_t k = numero(*e, static_cast<std::uint16_t>(t[4] << 8 | t[5]));
    c_.exigir(k >= e->ultimaEnviada, "writes of a register leave in order", n);
    c_.exigir(k > e->ultimaTerminada, "no write leaves after its end", n);
    e->ultimaEnviada = k;
    e->rechazadasVistas = e->rechazadas;
    const auto enlace = e->enlaces.find(k);
    if (enlace != e->enlaces.end())
        c_.exigir(enlace->second == c_.zocalo(n).conexiones(),
                  "no write outlives the link it was asked for on", n);
}

void ReglaDeEscrituras::alTerminar(const BloqueEscritura& b, FinDeEscritura fin) {
    if (fin == FinDeEscritura::Confirmada)
        c_.exigir(c_.lineas[b.idConexion]->respondio(
                      b.tramaSolicitud[1], b.tramaSolicitud[3],
                      static_cast<std::uint16_t>(static_cast<int>(b.palabra)), 0) ||
                      c_.lineas[b.idConexion]->disculpada(),
                  "what is confirmed was answered", b.idConexion);
    masEnEspera_ = std::max(masEnEspera_, c_.motor.ejecucion.enEspera() + 1);
    Escritor* e = buscar(b.idConexion, b.tramaSolicitud[1], b.tramaSolicitud[3]);
    if (e != nullptr) {
        ++e->terminadas;
        if (e->fuente != Fuente::Bit) {
            const auto valor = static_cast<std::uint16_t>(static_cast<int>(b.palabra));
            const std::uint64_t k = numero(*e, valor);
            c_.exigir(k > e->ultimaTerminada, "writes of a register end once and in order",
                      b.idConexion);
            e->ultimaTerminada = k;
            e->rechazadasVistas = e->rechazadas;
            e->enlaces.erase(e->enlaces.begin(), e->enlaces.upper_bound(k));
            if (fin == FinDeEscritura::Confirmada)
                c_.exigir(e->ultimaEnviada == k, "what is confirmed was sent", b.idConexion);
        }
    }
    siguiente_.alTerminar(b, fin);
}

void ReglaDeEscrituras::alRechazar(const Rechazo& r) {
    const auto i = porDireccion_.find(std::string(r.direccion));
    if (i != porDireccion_.end() && esDe(r.origen, i->second->fuente)) ++i->second->rechazadas;
    siguiente_.alRechazar(r);
}

void ReglaDeEscrituras::barrer() {
    const Tablas& t = c_.motor.tablas;
    sinEnlaceUs_.resize(c_.conexiones(), -1);
    std::size_t enEspera = 0;
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        const ConexionIP& c = c_.conexion(n);
        enEspera += c.escrituras.size();
        c_.exigir(c.escrituraPendiente == !c.escrituras.empty(), "a connection knows its writes",
                  n);
        if (c_.conectada(n) || c.escrituras.empty()) {
            sinEnlaceUs_[n] = -1;
        } else if (sinEnlaceUs_[n] < 0) {
            sinEnlaceUs_[n] = c_.ahoraUs();
        } else {
            c_.exigir(c_.ahoraUs() - sinEnlaceUs_[n] <= kSinEnlaceUs,
                      "a lost link gives up its writes", n);
        }
    }
    c_.exigir(enEspera == c_.motor.ejecucion.enEspera(), "the writes that wait are counted",
              enEspera);
    masEnEspera_ = std::max(masEnEspera_, enEspera);
    c_.exigir(t.escrituras.limiteSuperior() <= kTablaMaxima + masEnEspera_,
              "the write table is bounded", t.escrituras.limiteSuperior());
}

void ReglaDeEscrituras::alFinal() {
    for (const auto& [k, e] : escritores_) {
        const std::uint64_t hechas = e.terminadas + e.rechazadas;
        if (e.fuente == Fuente::Operador)
            c_.exigir(hechas == e.pedidas && e.aceptadas == e.terminadas,
                      "every write asked for was refused or ended", e.conexion);
        if (e.fuente == Fuente::Cliente)
            c_.exigir(hechas <= e.pedidas, "no write ended that nobody asked for", e.conexion);
    }
}

} // namespace kv::mundo
