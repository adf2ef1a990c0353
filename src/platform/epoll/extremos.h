// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <netinet/in.h>
#include <optional>
#include <string>
#include <sys/socket.h>

namespace kv {

/// An address of either kind; its port is for who uses it.
using Maquina = sockaddr_storage;

/// An address in figures, of either kind, without a port; no name server is asked for it.
[[nodiscard]] std::optional<Maquina> maquinaDe(const std::string& texto);
/// Puts a port into it; gives its length.
socklen_t ponerPuerto(Maquina& m, std::uint32_t puerto);
/// Where a program may listen; `ip` is four numbers.
[[nodiscard]] std::optional<sockaddr_in> lugarParaEscuchar(const std::string& ip,
                                                           std::uint32_t puerto);
/// As "10.0.0.1:1100".
[[nodiscard]] std::string textoDe(const sockaddr_in& direccion);
/// A machine that connects to one of its own ports may come out at that very port: then it has only
/// itself at the other end.
[[nodiscard]] bool esElMismo(int descriptor);
/// User and process of the program at the other end of a local link, as "1000/4711".
[[nodiscard]] std::string quienLlama(int descriptor);

} // namespace kv
