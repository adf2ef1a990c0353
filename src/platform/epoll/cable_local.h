// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace kv {

/// Why a link cannot be gone on with, in words.
struct FallaDeCable {
    std::string que;
};

/// A link to the socket file of a driver, line by line, for programs that may wait. All of it
/// throws FallaDeCable.
class CableLocal {
  public:
    explicit CableLocal(const std::string& ruta);
    ~CableLocal();
    CableLocal(const CableLocal&) = delete;
    CableLocal& operator=(const CableLocal&) = delete;

    void enviar(std::string renglon) const;
    /// The next line; false when no line came in time. With `segundos` below 0 it is waited for
    /// without end.
    [[nodiscard]] bool renglon(std::string& destino, double segundos);

  private:
    void recibir();

    int d_;
    std::string recibido_;
    std::size_t desde_ = 0; ///< where the line begins that comes next
    std::size_t visto_ = 0; ///< up to where there is no end of it
};

} // namespace kv
