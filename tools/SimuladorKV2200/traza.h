// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace kv::simulador {

/// The printed trace: one line an event, written once per turn of the loop.
class Traza {
  public:
    Traza(std::ostream& salida, bool encendida) : salida_(salida), encendida_(encendida) {}
    void linea(std::string_view enlace, std::string_view texto);
    /// "LINK <- 52 01 00 1F 00 00 72", and a remark behind it if there is one.
    void bytes(std::string_view enlace, std::string_view sentido, std::string_view bytes,
               std::string_view nota);
    void volcar();

  private:
    std::ostream& salida_;
    std::string pendiente_;
    bool encendida_;
};

} // namespace kv::simulador
