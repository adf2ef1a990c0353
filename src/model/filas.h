// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/tablas.h"
#include "view/vista.h"

#include <optional>
#include <string>

namespace kv {

/// What the rows of the variables list say: it stands in the tables.
class FilasDeVariables final : public Redactor {
  public:
    /// Both must outlive this.
    FilasDeVariables(const Tablas& tablas, Lista& lista);
    ~FilasDeVariables() override { lista_.redactarCon(nullptr); }
    FilasDeVariables(const FilasDeVariables&) = delete;
    FilasDeVariables& operator=(const FilasDeVariables&) = delete;
    [[nodiscard]] std::optional<std::string> texto(std::uint32_t fila,
                                                   std::size_t columna) const override;

  private:
    const Tablas& tablas_;
    Lista& lista_;
};

/// The same of the list of blocks, but for what its blocks' clocks put there.
class FilasDeBloques final : public Redactor {
  public:
    FilasDeBloques(const Tablas& tablas, Lista& lista);
    ~FilasDeBloques() override { lista_.redactarCon(nullptr); }
    FilasDeBloques(const FilasDeBloques&) = delete;
    FilasDeBloques& operator=(const FilasDeBloques&) = delete;
    [[nodiscard]] std::optional<std::string> texto(std::uint32_t fila,
                                                   std::size_t columna) const override;

  private:
    const Tablas& tablas_;
    Lista& lista_;
};

} // namespace kv
