// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <sys/types.h>

namespace kv::banco {

/// What a client does once it is connected.
enum class Conducta : std::uint8_t {
    Lee,        ///< logs in, reads all it is sent and answers keep-alives
    Basura,     ///< logs in and sends junk as fast as it is taken
    Anidadas,   ///< logs in and sends frames within frames as fast as they are taken
    Negadas,    ///< logs in and sends writes of unknown registers as fast as they are taken
    Escrituras, ///< logs in and sends distinct writes of one register as fast as they are taken
    NoLee,      ///< logs in, asks for one synchronisation after another and reads nothing
    Goteo,      ///< logs in and sends a byte a millisecond of a frame that never closes
    VaYViene,   ///< connects and leaves again and again
};

/// A supervisory client in a process of its own, which comes back whenever it is closed.
class ClienteDeBanco {
  public:
    ClienteDeBanco(std::uint16_t puerto, Conducta conducta);
    ~ClienteDeBanco();
    ClienteDeBanco(const ClienteDeBanco&) = delete;
    ClienteDeBanco& operator=(const ClienteDeBanco&) = delete;

  private:
    pid_t hijo_ = -1;
};

} // namespace kv::banco
