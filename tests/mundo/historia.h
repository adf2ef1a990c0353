// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/plan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kv::mundo {

/// What may happen to a plant. `a`, `b`, `c` and `ms` of an episode are meant as said here.
enum class Acto : std::uint8_t {
    // Links and stations: `a` is the connection.
    Cortar,     ///< the far side closes or, odd `c`, resets
    Retener,    ///< nothing passes for `ms`, then all of it comes
    MedioAbrir, ///< nothing passes for `ms`, then the link is gone
    Rechazar,   ///< cut, and refused for `ms`, or not reached in one of many ways, as `c` says
    Enmudecer,  ///< half-open, and the host is off for `ms`
    Perder,     ///< the next `b` requests are not answered
    Callar,     ///< the station of block `b` is silent for `ms`
    Demorar,    ///< the next `b` answers come `c` thousandths of a time-out late
    Partir,     ///< the next `b` answers come in `c` pieces
    Danar,      ///< bit `c` of the next `b` answers is wrong
    Duplicar,   ///< the next `b` answers come twice, together or, odd `c`, within the pause
    Trocar,     ///< the next two answers change places
    Soltar,     ///< an answer nobody asked for, of value `c`; or `b` bytes of garbage
    Reiniciar,  ///< the stations restart
    Habituar,   ///< its stations begin to fill the free bytes of their answers in manner `b`
    Mentir,     ///< an answer in time has the free bytes of another register's
    // The supervisory client.
    Entrar,       ///< connects and logs in, and comes back when it is thrown out
    Salir,        ///< leaves for good
    Desaparecer,  ///< its link is half-open from now on
    NoLeer,       ///< takes only `b` bytes more for `ms`
    Ignorar,      ///< answers no keep-alives for `ms`
    Sincronizar,  ///< asks for everything
    Escribir,     ///< writes `b` registers in one arrival
    PedirLectura, ///< reads block `b`
    PedirForzado, ///< forces level `b` `c` times
    Hostil,       ///< sends bytes of kind `b` that are no message of the protocol
    OtroCliente,  ///< a second one knocks; kind `b` as above
    // The script's file.
    Guion, ///< becomes text number `b`
    // Settings, clock, disk.
    Ajuste,     ///< setting number `b` gets text number `c`
    SinAjustes, ///< the settings file goes, or loses its second half
    Reloj,      ///< the wall clock jumps by `ms`
    Parada,     ///< the machine stands still for `ms`
    DiscoLleno, ///< nothing can be written for `ms`
    SinLogs,    ///< the folder of logs is read-only for `ms`
    // Operators.
    Forzar,        ///< block `a`, or a malformed address of kind `b`
    Nivel,         ///< level `b`, `c` times; 0 and -1 switch it
    Encender,      ///< block `a` off and, `ms` later, on
    Scan,          ///< block `a` gets scan `ms`, and its own back later
    EscribirAMano, ///< `b` writes of a register of theirs, number `a`
    Bit,           ///< bit `c` of a register written bit by bit, number `a`
    Cuantas
};

struct Episodio {
    std::uint32_t numero = 0; ///< its place in the history drawn
    std::int64_t us = 0;      ///< when, after the start
    Acto que = Acto::Cortar;
    std::uint32_t a = 0, b = 0, c = 0;
    std::int64_t ms = 0;
    bool enMedio = false; ///< at the next event, inside whatever handler is running
};

/// All that will happen to a plant, in order of time. Drawn as a whole beforehand, so that any part
/// of it can be played again.
[[nodiscard]] std::vector<Episodio> historiaDe(const Plan& plan);

[[nodiscard]] std::string textoDe(const Episodio& episodio);

} // namespace kv::mundo
