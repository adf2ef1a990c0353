// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/suceso.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace kv {

/// The latest texts of one kind of events, as many as fit. A number stands for each.
class TextosDeSucesos {
  public:
    /// Bytes of all together, with what it takes to keep each.
    static constexpr std::size_t kMaximo = std::size_t{384} << 10;

    /// Never 0. A text that is too long for all is cut.
    std::uint32_t guardar(std::string_view texto);
    /// Empty when it has had to go.
    [[nodiscard]] std::string_view ver(std::uint32_t numero) const;
    [[nodiscard]] std::size_t cuantos() const { return guardados_.size(); }

  private:
    std::deque<std::string> guardados_;
    std::uint32_t ultimo_ = 0;
    std::size_t bytes_ = 0;
};

/// What takes up its own room, so that noise on a line does not drive out what an operator asked.
enum class Almacen : std::uint8_t { Estaciones, Pedidos, Guion, DelCliente, AlCliente };
inline constexpr std::size_t kAlmacenes = 5;

[[nodiscard]] Almacen almacenDe(Que que);

} // namespace kv
