// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/tablas.h"
#include "view/lista.h"

#include <optional>
#include <string>

namespace kv {

/// What the rows of a list say whose tags are blocks: it stands in the tables.
class FilasDeTablas : public Redactor {
  public:
    /// Both must outlive this.
    FilasDeTablas(const Tablas& tablas, Lista& lista) : tablas_(tablas), lista_(lista) {
        lista_.redactarCon(this);
    }
    ~FilasDeTablas() override { lista_.redactarCon(nullptr); }
    FilasDeTablas(const FilasDeTablas&) = delete;
    FilasDeTablas& operator=(const FilasDeTablas&) = delete;

  protected:
    /// Null where the row's tag is not a block.
    [[nodiscard]] const BloqueLectura* bloqueDe(std::uint32_t fila) const;

  private:
    const Tablas& tablas_;
    Lista& lista_;
};

class FilasDeVariables final : public FilasDeTablas {
  public:
    using FilasDeTablas::FilasDeTablas;
    [[nodiscard]] std::optional<std::string> texto(std::uint32_t fila,
                                                   std::size_t columna) const override;
};

/// But for what the blocks' clocks put there.
class FilasDeBloques final : public FilasDeTablas {
  public:
    using FilasDeTablas::FilasDeTablas;
    [[nodiscard]] std::optional<std::string> texto(std::uint32_t fila,
                                                   std::size_t columna) const override;
};

} // namespace kv
