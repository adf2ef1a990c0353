// SPDX-License-Identifier: Apache-2.0
// A whole driver on the simulated platform, and a station that does what the input says: it answers
// late, in pieces, never, with garbage; the link is cut, held and let go. After every event the
// rule of the connections must hold, and when the station is well again, so must be the plant.
//
// The first byte says which kind of station it is:
// - one with garbage: of its values only those are known to be wrong that nothing answered;
// - a slow one: it answers everything in order, up to two and a half time-outs late;
// - a fitful one: it answers in order and in time, or not at all, and the network may hold
//   everything back for any time, but lets what is on its way through before it does so again.
// Neither of the last two may ever put a value in another register's place.

#include "apoyo/planta.h"

#include <cstdint>
#include <deque>
#include <set>
#include <string>

namespace kv {
namespace {

constexpr double kTiempoFueraMs = 1000;
constexpr double kMasTarde = 2.5 * kTiempoFueraMs;
constexpr double kATiempo = 0.9 * kTiempoFueraMs;
constexpr double kPausaMs = 20;

enum class Clase : std::uint8_t { ConBasura, Lenta, Caprichosa };

void exigir(bool cierto) {
    if (!cierto) __builtin_trap();
}

/// The input, read from its start; zeros when it has ended.
class Entrada {
  public:
    Entrada(const std::uint8_t* datos, std::size_t largo) : bytes_(datos, largo) {}
    [[nodiscard]] bool quedan() const { return !bytes_.empty(); }
    std::uint8_t byte() { return quedan() ? tomar(1)[0] : std::uint8_t{0}; }
    std::span<const std::uint8_t> tomar(std::size_t n) {
        const auto t = bytes_.first(std::min(n, bytes_.size()));
        bytes_ = bytes_.subspan(t.size());
        return t;
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

int propio(const Solicitud& s) { return s[1] * 100 + s[3]; }

/// The stations at the other end. They do nothing on their own until `sanas`.
class Contrario final : public ExtremoSimulado {
  public:
    Contrario(Planta& planta, Clase clase) : planta_(planta), clase_(clase) {}

    void alConectar(IdEnlace id) override {
        enlace = id;
        pendientes.clear();
        parte.clear();
        pedidas.clear();
        ultimoMs_ = -kPausaMs;
        libre = true;
        interrumpida = false;
        llegaron = 0;
    }
    void alCortarse(IdEnlace id) override {
        if (id == enlace) enlace = 0;
    }
    void alRecibir(IdEnlace id, std::span<const std::uint8_t> bytes) override {
        if (id != enlace) return;
        // One request at a time, and not before the pause is over.
        exigir(interrumpida || bytes.size() == kLargoSolicitud);
        const double ahora = planta_.ahoraMs();
        exigir(interrumpida || ahora - ultimoMs_ >= kPausaMs);
        ultimoMs_ = interrumpida ? 0 : ahora; // what was held left long ago
        for (; bytes.size() >= kLargoSolicitud; bytes = bytes.subspan(kLargoSolicitud)) {
            Solicitud s{};
            std::copy_n(bytes.begin(), s.size(), s.begin());
            // Another register is asked for only when the connection was done with the last one.
            exigir(interrumpida || libre || s == ultima_);
            ultima_ = s;
            pedidas.insert(s);
            libre = interrumpida;
            pendientes.push_back({s, ahora});
            if (sanas) responder(kLargoRespuesta);
        }
    }
    /// The oldest request is answered: so many bytes now, the others before anything else is sent.
    void responder(std::size_t ahora) {
        completar();
        if (clase_ == Clase::Caprichosa) olvidarViejas();
        if (pendientes.empty()) return;
        const Solicitud s = pendientes.front().solicitud;
        parteDesdeMs_ = pendientes.front().ms;
        pendientes.pop_front();
        const Respuesta r = respuestaCon(propio(s), s[1], s[3]);
        parte.assign(r.begin(), r.end());
        const std::vector<std::uint8_t> primera(parte.begin(),
                                                parte.begin() + static_cast<std::ptrdiff_t>(ahora));
        parte.erase(0, ahora);
        mandar(primera);
    }
    void completar() {
        mandar(std::vector<std::uint8_t>(parte.begin(), parte.end()));
        parte.clear();
    }
    /// Before so much time passes: what would be too late is sent.
    void apurar(double ms) {
        const double hasta = planta_.ahoraMs() + ms - masTarde();
        if (parteDesdeMs_ < hasta) completar();
        while (clase_ == Clase::Lenta && !pendientes.empty() && pendientes.front().ms < hasta)
            responder(kLargoRespuesta);
    }
    void mandar(std::span<const std::uint8_t> bytes) {
        if (enlace == 0 || bytes.empty()) return;
        llegaron += bytes.size();
        planta_.bucle.red().enviar(enlace, bytes);
    }
    void callar() {
        if (clase_ != Clase::Lenta && !pendientes.empty()) pendientes.pop_front();
    }

    struct Pendiente {
        Solicitud solicitud;
        double ms;
    };
    IdEnlace enlace = 0;
    std::deque<Pendiente> pendientes;
    std::string parte;
    std::size_t llegaron = 0;    ///< bytes sent on this link
    std::set<Solicitud> pedidas; ///< what was asked for on this link
    bool libre = true;           ///< the connection was seen not waiting since the last request
    bool interrumpida = false;
    bool sanas = false;

  private:
    [[nodiscard]] double masTarde() const { return clase_ == Clase::Lenta ? kMasTarde : kATiempo; }
    void olvidarViejas() {
        const double hasta = planta_.ahoraMs() - masTarde();
        while (!pendientes.empty() && pendientes.front().ms < hasta)
            pendientes.pop_front();
    }

    Planta& planta_;
    Clase clase_;
    Solicitud ultima_{};
    double parteDesdeMs_ = 0;
    double ultimoMs_ = 0;
};

Configuracion planta() {
    return Configuracion()
        .puerto({"1", "1", "2"})
        .estacion(1, "10.0.0.1", 1)
        .estacion(2, "10.0.0.1", 2)
        .bloque(1, "10", "1")
        .bloque(1, "07", "1")
        .bloque(2, "12", "1.5");
}

class Mundo {
  public:
    explicit Mundo(Clase clase) : clase_(clase), planta_(config_), contrario_(planta_, clase) {
        planta_.bucle.red().atender("10.0.0.1", 502, contrario_);
        planta_.ajuste("Tiempo_Entre_poleo", "20");
        planta_.ajuste("Base_Tiempo_Solicitar_Conexiones_Milisegundos", "100");
        planta_.ajuste("Guion_Llamadas_Anidadas_Maximo", "10"); // less to set aside
        planta_.arrancar();
        fijos_ = planta_.bucle.temporizadoresEncendidos() - 1; // but the one that asks for links
        planta_.bucle.alTerminarCadaSuceso([this] { vigilar(); });
        planta_.avanzar(5100);
    }
    void paso(Entrada& e) {
        const std::uint8_t orden = e.byte();
        switch (orden % 8) {
        case 0:
            basura(e.tomar(orden / 8U + 1));
            break;
        case 1:
            contrario_.responder(kLargoRespuesta);
            break;
        case 2:
            contrario_.responder(orden / 8U % kLargoRespuesta);
            break;
        case 3:
            contrario_.completar();
            break;
        case 4:
            contrario_.callar();
            break;
        case 5:
            dejarPasar(orden / 8);
            break;
        case 6:
            dejarPasar(e.byte() * 20.0);
            break;
        default:
            enlace(orden / 8U);
            break;
        }
        if (orden % 2 == 0) planta_.avanzar(1);
    }
    /// A station that is well brings every value back, whatever was before.
    void sanar() {
        planta_.bucle.red().reanudar(contrario_.enlace);
        planta_.avanzar(1); // what was held back comes now, in one piece
        contrario_.interrumpida = false;
        contrario_.completar();
        while (!contrario_.pendientes.empty())
            contrario_.responder(kLargoRespuesta);
        contrario_.sanas = true;
        int seguidos = 0; // seconds, and garbage on its way may still look like an answer
        for (int s = 0; s < 120 && seguidos < 5; ++s) {
            planta_.avanzar(1000);
            seguidos = bien() ? seguidos + 1 : 0;
        }
        exigir(seguidos == 5);
    }

  private:
    [[nodiscard]] bool bien() {
        for (std::size_t i = 0; i < 3; ++i) {
            if (!planta_.ok(i) || planta_.valor(i) != propio(planta_.bloque(i).tramaSolicitud))
                return false;
        }
        return true;
    }
    void dejarPasar(double ms) {
        constexpr double kTrozoMs = 100;
        for (; ms > 0; ms -= kTrozoMs) {
            contrario_.apurar(kTrozoMs);
            planta_.avanzar(std::min(ms, kTrozoMs));
        }
    }
    void basura(std::span<const std::uint8_t> bytes) {
        if (clase_ == Clase::ConBasura) contrario_.mandar(bytes);
    }
    void enlace(std::size_t que) {
        RedSimulada& red = planta_.bucle.red();
        if (que % 4 == 0) red.cortar(contrario_.enlace);
        const bool puede = planta_.ahoraMs() - soltadaMs_ >= kTiempoFueraMs;
        if (que % 4 == 1 && clase_ != Clase::Lenta && puede) {
            planta_.avanzar(1);
            red.interrumpir(contrario_.enlace);
            contrario_.interrumpida = true;
        }
        if (que % 4 >= 2) {
            red.reanudar(contrario_.enlace);
            planta_.avanzar(1);
            if (contrario_.interrumpida) soltadaMs_ = planta_.ahoraMs();
            contrario_.interrumpida = false;
        }
    }
    void vigilar() {
        ConexionIP& c = planta_.conexion(0);
        exigir(c.recepcion.size() < kLargoRespuesta);
        if (c.turno != EstadoDeTurno::Esperando) contrario_.libre = true;
        vigilarTimers(c);
        vigilarValores();
    }
    /// Those of the connection are the ones that run beside all others: exactly one of its two
    /// while it is not free.
    void vigilarTimers(const ConexionIP& c) {
        const Zocalo& z = planta_.motor.conexiones.wsSocket(0);
        const bool supervisada = z.estado() == EstadoZocalo::Conectado &&
                                 c.estadoSupervision == 1 && c.enlaceSupervisado == z.conexiones();
        if (!supervisada || enlaceVisto_ != c.enlaceSupervisado) {
            enlaceVisto_ = supervisada ? c.enlaceSupervisado : 0;
            vistoMs_ = planta_.ahoraMs();
        }
        // The timer that asks for connections goes off at the end of the pass that sees the last of
        // them; until then it would be counted.
        if (!supervisada || planta_.ahoraMs() == vistoMs_) return;
        std::size_t otros = fijos_;
        for (std::size_t i = 0; i < 3; ++i)
            otros += planta_.motor.relojDeBloques.enMarcha(static_cast<Indice>(i)) ? 1U : 0U;
        const std::size_t suyos = planta_.bucle.temporizadoresEncendidos() - otros;
        exigir(suyos == (c.turno == EstadoDeTurno::Libre ? 0U : 1U));
    }
    void vigilarValores() {
        for (std::size_t i = 0; i < 3; ++i) {
            const bool nuevo = planta_.ok(i) && !estabaOk_[i];
            estabaOk_[i] = planta_.ok(i);
            if (nuevo && !contrario_.interrumpida)
                exigir(contrario_.llegaron >= kLargoRespuesta &&
                       contrario_.pedidas.contains(planta_.bloque(i).tramaSolicitud));
            if (clase_ != Clase::ConBasura && planta_.ok(i))
                exigir(planta_.valor(i) == propio(planta_.bloque(i).tramaSolicitud));
        }
    }

    Clase clase_;
    Configuracion config_ = planta();
    Planta planta_;
    Contrario contrario_;
    std::size_t fijos_ = 0; ///< timers that always run
    std::uint64_t enlaceVisto_ = 0;
    double vistoMs_ = 0;
    double soltadaMs_ = 0; ///< what the network held back was let go
    std::array<bool, 3> estabaOk_{};
};

} // namespace
} // namespace kv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    constexpr std::size_t kPasos = 200;
    kv::Entrada entrada(datos, largo);
    kv::Mundo mundo(static_cast<kv::Clase>(entrada.byte() % 3));
    for (std::size_t i = 0; i < kPasos && entrada.quedan(); ++i)
        mundo.paso(entrada);
    mundo.sanar();
    return 0;
}
