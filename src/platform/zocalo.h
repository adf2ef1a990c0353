// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace kv {

/// The states of the original's socket control that this system looks at.
enum class EstadoZocalo : std::uint8_t {
    Cerrado = 0,
    Escuchando = 2,
    Conectando = 6,
    Conectado = 7,
    CerradoPorElOtro = 8, ///< the peer has closed and we have not yet
    Error = 9,
};

/// What a socket tells. `indice` is the number that the socket was created with, so that one object
/// can listen to a whole array of sockets. Any socket, also the one that tells, may be closed or
/// destroyed inside a call.
class OyenteDeZocalo {
  public:
    virtual ~OyenteDeZocalo() = default;
    virtual void alConectar(std::size_t /*indice*/) {}
    /// At most 64 KiB at a time. `bytes` is valid during the call only.
    virtual void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) = 0;
    /// The link ended from the other side or failed: the state is 8 or 9.
    virtual void alCortarse(std::size_t /*indice*/) {}
    /// A peer wants to connect to a listening socket; `remoto` is "address:port", or on this
    /// machine "user/process" as numbers. Accept with `aceptar` during the call, or the request is
    /// dropped.
    virtual void alPedirConexion(std::size_t /*indice*/, std::string_view /*remoto*/) {}
};

/// A TCP socket that never blocks: client, listener or, after `aceptar`, the accepted link.
class Zocalo {
  public:
    static constexpr std::size_t kGrupo = std::size_t{64} * 1024; ///< bytes

    virtual ~Zocalo() = default;
    [[nodiscard]] virtual EstadoZocalo estado() const = 0;
    /// Closes what was open and starts connecting: state 6, later 7 or 9. `maquina` is an IPv4 or
    /// IPv6 address or a name, which is looked up anew each time, and blanks around it do not
    /// count; another text or a port outside 1 to 65535 leads to state 9. Of several addresses of
    /// a name each has its turn.
    virtual void conectar(const std::string& maquina, std::uint32_t puerto) = 0;
    /// Closes what was open and listens: state 2, or 9 with `motivo()` saying why.
    virtual void escuchar(const std::string& ip, std::uint32_t puerto) = 0;
    /// The same for programs of this machine, by a socket file that is made at `ruta` and goes with
    /// the state; one that was left there is replaced. It is its owner's alone, and of the group
    /// `grupo` where that is not negative; a group that cannot be given leaves it the owner's, and
    /// `motivo()` says so.
    virtual void escucharLocal(const std::string& ruta, std::int64_t grupo) = 0;
    /// Stops listening and keeps the port: who connects is refused, nobody else can have it, and
    /// `escuchar` with the same place takes it up again. State 0.
    virtual void reservar() = 0;
    /// Only inside `alPedirConexion`: stops listening and takes the link: state 7.
    virtual void aceptar() = 0;
    /// Only inside `alPedirConexion`: takes the link into a new socket, state 7 or 9, and listens
    /// on. Never null.
    [[nodiscard]] virtual std::unique_ptr<Zocalo> aceptarAparte(OyenteDeZocalo& oyente,
                                                                std::size_t indice) = 0;
    virtual void cerrar() = 0;
    /// Closes so that nothing which has not left yet leaves any more, neither from the queue nor
    /// from the kernel, which after `cerrar` goes on sending for as long as it takes. The peer sees
    /// a reset. State 0, and no event.
    virtual void abortar() = 0;
    /// Hands bytes to the link in order. What the kernel does not take now waits in a queue; when
    /// more than the queue's limit would wait the link is closed with state 9. False unless
    /// state 7.
    virtual bool enviar(std::span<const std::uint8_t> bytes) = 0;
    /// From now on what is sent waits until the end of the loop's turn, or until there is a group's
    /// worth of it, and leaves in one piece. With `false` what waits leaves at once, as far as the
    /// link takes it.
    virtual void agruparEnvios(bool agrupar) = 0;
    /// While it is held nothing that comes is delivered, neither bytes nor the end of the link:
    /// they wait in the system, whose room is limited, so that in the end the peer is held back.
    /// What is sent in groups waits with them. A link that comes up is not held.
    virtual void frenar(bool freno) = 0;
    /// Bytes that may wait to be sent; 64 KiB at the start.
    virtual void limitarCola(std::size_t bytes) = 0;
    [[nodiscard]] virtual std::size_t enCola() const = 0;
    /// Bytes sent on this link that the peer's host has not acknowledged, those in the queue among
    /// them. A host acknowledges what it has, whatever its program does about it, though it may
    /// take some tenths of a second; 0 unless state 7.
    [[nodiscard]] virtual std::size_t bytesSinConfirmar() const = 0;
    /// A link on which nothing is acknowledged for so long although bytes were sent fails: state 9.
    /// For this link and those to come; 0, as at the start, leaves it to the system, which takes a
    /// quarter of an hour.
    virtual void fijarPaciencia(std::int64_t ms) = 0;
    /// Counts the connections that came up on this socket: a link that was lost and came back
    /// shows.
    [[nodiscard]] virtual std::uint64_t conexiones() const = 0;
    /// Why the state is 9, in words; empty otherwise.
    [[nodiscard]] virtual const std::string& motivo() const = 0;
    /// Local port in use, 0 without one.
    [[nodiscard]] virtual std::uint32_t puertoLocal() const = 0;
};

} // namespace kv
