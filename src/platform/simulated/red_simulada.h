// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/reloj.h"

#include <cstdint>
#include <map>
#include <queue>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace kv {

class ZocaloSimulado;

/// A link of the simulated network, as the far side names it. Never reused.
using IdEnlace = std::uint64_t;

/// The far side of simulated links: a station that was connected to, or a client that connects.
class ExtremoSimulado {
  public:
    virtual ~ExtremoSimulado() = default;
    virtual void alConectar(IdEnlace /*enlace*/) {}
    virtual void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) = 0;
    virtual void alCortarse(IdEnlace /*enlace*/) {}
};

/// A virtual TCP network. Bytes keep their order within one direction of a link, as on a real one;
/// everything else (how late, how cut, whether at all) is the test's to say.
class RedSimulada {
  public:
    explicit RedSimulada(const Reloj& reloj) : reloj_(reloj) {}

    // The plant's side.
    /// From now on connections to the address reach `extremo`, which must outlive the network's
    /// use.
    void atender(const std::string& ip, std::uint32_t puerto, ExtremoSimulado& extremo);
    /// Connections to the address are refused (as they are to an address nobody ever served).
    void rechazar(const std::string& ip, std::uint32_t puerto);
    /// Connections to the address are never answered: the host is off.
    void enmudecer(const std::string& ip, std::uint32_t puerto);
    /// Connections to the address end with an error of the system, so long after they are asked
    /// for: no route (EHOSTUNREACH), reset at once (ECONNRESET), the kernel's own patience
    /// (ETIMEDOUT). With no time at all in between, as where the kernel itself knows no way
    /// (ENETUNREACH), they fail in the call and no event comes.
    void negar(const std::string& ip, std::uint32_t puerto, int error, std::int64_t demoraUs);
    /// From now on a name leads to the machine, or with an empty one to no machine; it is looked up
    /// at each attempt, as long as `demorarNombres` says. A text that is no name is its own
    /// machine.
    void nombrar(const std::string& nombre, const std::string& ip) { nombres_[nombre] = ip; }
    /// How long looking up takes from now on; for ever: below 0.
    void demorarNombres(std::int64_t us) { nombresUs_ = us; }
    /// Bytes from the far side, arriving `demoraUs` from now but never before earlier ones.
    void enviar(IdEnlace enlace, std::span<const std::uint8_t> bytes, std::int64_t demoraUs = 0);
    /// The far side closes: seen after what it sent before.
    void cortar(IdEnlace enlace, std::int64_t demoraUs = 0);
    /// The link fails with an error of the system, seen after what the far side sent before: it
    /// resets (ECONNRESET), or a router has no way any more. What is on its way to it is lost.
    void romper(IdEnlace enlace, int error, std::int64_t demoraUs = 0);
    /// The link dies without a word, as when a cable is pulled: nothing that is sent arrives any
    /// more, neither way, and what the socket sends stays unacknowledged. It is kept and delivered
    /// after `reanudar`, as TCP does after an outage, also when the socket was closed meanwhile,
    /// but not when it was aborted or lost its patience; without one the link is half-open for
    /// good, or until `cortar`.
    void interrumpir(IdEnlace enlace);
    void reanudar(IdEnlace enlace);
    /// A client connects to a port on which the driver listens.
    IdEnlace conectarCliente(std::uint32_t puerto, ExtremoSimulado& extremo,
                             const std::string& remoto = "10.0.0.9:50000");
    /// Where to connect to a socket file: a port that nothing else has.
    [[nodiscard]] std::uint32_t puertoDeRuta(const std::string& ruta);
    /// From now on a socket file can be given to no group.
    void negarGrupos() { niegaGrupos_ = true; }
    [[nodiscard]] bool niegaGrupos() const { return niegaGrupos_; }
    [[nodiscard]] bool vivo(IdEnlace enlace) const { return enlaces_.contains(enlace); }
    /// One way, both ways alike; 200 us at the start.
    void fijarLatencia(std::int64_t us) { latenciaUs_ = us; }
    /// Bytes that a peer which reads nothing leaves in the link before `enviar` has to queue.
    void fijarVentana(IdEnlace enlace, std::size_t bytes);

    // The loop's side.
    [[nodiscard]] std::int64_t proximo() const { return sucesos_.empty() ? -1 : sucesos_.top().us; }
    /// Delivers the first event if it is due; false if it is not, or the queue is empty.
    bool entregar();

    // The sockets' side.
    IdEnlace pedirConexion(ZocaloSimulado& zocalo, const std::string& ip, std::uint32_t puerto);
    void desdeZocalo(IdEnlace enlace, std::span<const std::uint8_t> bytes);
    void cerrarDesdeZocalo(IdEnlace enlace);
    void abortarDesdeZocalo(IdEnlace enlace);
    /// Bytes from the socket that have not arrived at the far side's host.
    [[nodiscard]] std::size_t sinConfirmar(IdEnlace enlace) const;
    void fijarPaciencia(IdEnlace enlace, std::int64_t us);
    /// While it is held nothing is delivered to the socket; all of it comes afterwards, in order.
    void frenar(IdEnlace enlace, bool freno);
    bool escuchar(std::uint32_t puerto, ZocaloSimulado& zocalo);
    void dejarDeEscuchar(std::uint32_t puerto, const ZocaloSimulado& zocalo);
    void adoptar(IdEnlace enlace, ZocaloSimulado& zocalo);
    /// Bytes that the link still takes from the socket's side.
    [[nodiscard]] std::size_t ventana(IdEnlace enlace) const;

  private:
    enum class Tipo : std::uint8_t {
        Conexion,
        AlZocalo,
        AlExtremo,
        CorteAlZocalo,
        CorteAlExtremo,
        Rotura,
        Pedido,
        Impaciencia,
        Nombre
    };
    struct Suceso {
        std::int64_t us;
        std::uint64_t orden;
        Tipo tipo;
        IdEnlace enlace;
        std::string bytes;
        bool operator<(const Suceso& o) const { return us != o.us ? us > o.us : orden > o.orden; }
    };
    struct Enlace {
        ZocaloSimulado* zocalo = nullptr;
        ExtremoSimulado* extremo = nullptr;
        std::int64_t ultimoAlZocalo = 0;
        std::int64_t ultimoAlExtremo = 0;
        bool conectado = false;
        bool interrumpido = false;
        bool abortado = false;
        bool corteGuardado = false;      ///< closed by the socket, and the far side does not know
        std::size_t sinConfirmar = 0;    ///< bytes
        std::int64_t sinConfirmarUs = 0; ///< since when some are, without progress
        std::int64_t pacienciaUs = 0;    ///< 0: for ever
        bool freno = false;
        std::vector<Suceso> retenidos; ///< while it was held
        bool seImpacienta = false;     ///< its event is noted
        int error = 0;                 ///< with which it ends
        std::uint32_t puerto = 0;      ///< of a client's request, or where a name is looked up for
        std::size_t ventana = static_cast<std::size_t>(-1);
        std::string remoto;
        std::string guardadoAlZocalo;
        std::string guardadoAlExtremo;
    };
    struct Servicio {
        ExtremoSimulado* extremo = nullptr;
        bool mudo = false;
        int error = 0; ///< what connections end with; 0: they come up
        std::int64_t demoraUs = 0;
    };

    void anotar(std::int64_t us, Tipo tipo, IdEnlace enlace, std::string bytes = {});
    void aplicar(const Suceso& suceso, Enlace& enlace);
    void llamar(IdEnlace id, Enlace& enlace, const std::string& ip);
    void aplicarConexion(IdEnlace id, Enlace& enlace);
    void aplicarPedido(IdEnlace id, Enlace& enlace);
    void entregarAlExtremo(const Suceso& suceso, Enlace& enlace);
    void cortarAlExtremo(IdEnlace id, Enlace& enlace);
    void impacientar(IdEnlace id, Enlace& enlace);
    void esperarConfirmacion(IdEnlace id, Enlace& enlace);
    [[nodiscard]] static std::string clave(const std::string& ip, std::uint32_t puerto);

    const Reloj& reloj_;
    std::int64_t latenciaUs_ = 200;
    std::int64_t nombresUs_ = 0;
    bool niegaGrupos_ = false;
    std::uint64_t orden_ = 0;
    IdEnlace ultimoEnlace_ = 0;
    std::priority_queue<Suceso> sucesos_;
    std::unordered_map<IdEnlace, Enlace> enlaces_;
    std::map<std::string, Servicio> servicios_;
    std::map<std::string, std::string> nombres_;
    std::map<std::uint32_t, ZocaloSimulado*> escuchas_;
    std::map<std::string, std::uint32_t> rutas_;
};

} // namespace kv
