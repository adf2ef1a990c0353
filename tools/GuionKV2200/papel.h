// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Where the desk prints what a script does: lines, with the row that they belong to above the
/// first of each where there are several rows.
class Papel {
  public:
    /// From now on lines belong to this run; an empty heading is not printed.
    void titular(std::string titulo) {
        titulo_ = std::move(titulo);
        dicho_ = false;
    }
    void linea(std::string_view texto);

  private:
    std::string titulo_;
    bool dicho_ = false;
};
