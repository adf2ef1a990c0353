// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "wire/Modulo_Tramas_KV2200.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kv::simulador {

/// Finds requests in the bytes of a link, however they are split or run together. Bytes that begin
/// no valid request are skipped one by one, so that nothing valid after them is lost.
class Solicitudes {
  public:
    struct Suceso {
        std::optional<Solicitud> solicitud;
        std::string ignorados; ///< when there is no request: the bytes that were skipped
    };
    void agregar(std::span<const std::uint8_t> bytes);
    /// The next request or run of skipped bytes; nothing until more bytes come. Call until nothing,
    /// so that less than a request stays behind.
    [[nodiscard]] std::optional<Suceso> siguiente();

  private:
    std::string bytes_;
    std::size_t leidos_ = 0;
};

} // namespace kv::simulador
